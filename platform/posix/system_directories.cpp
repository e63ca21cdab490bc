#include "platform/program_paths.h"

// Off Windows the core runs only in tests and tools, which choose their own folders.
std::string QuerySystemWindowsDirectory() { return "."; }
