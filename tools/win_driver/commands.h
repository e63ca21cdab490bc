// The driver's commands: one per call from a test script.
#pragma once

#include <string>
#include <vector>

#include "options.h"

namespace driver {

struct Command {
  const char* name;
  const char* usage;                 // the options, as shown by "help"
  std::vector<std::string> accepts;  // option names the command understands
  void (*run)(const Options& options);
};

const std::vector<Command>& Commands();

// Window texts are in the ANSI code page; scripts on the Linux side read UTF-8.
// --raw keeps the ANSI bytes.
void SetRawOutput(bool raw);
std::string ToOutput(const std::string& ansiText);

}  // namespace driver
