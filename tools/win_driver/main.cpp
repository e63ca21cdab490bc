// orvalen_driver: drives the program's windows for the end-to-end tests. Run
// once per check, in the same Wine prefix as the program:
//
//   orvalen_driver wait-window --title "Orvalen"
//   orvalen_driver answer-box --title Orvalen --contains "Hang up" --button yes
//
// The result goes to stdout; exit 0 on success, 1 when the check fails or times
// out, 2 for a wrong command line, with the reason on stderr. "help" lists
// the commands.
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "commands.h"
#include "options.h"

namespace {

void PrintUsage(std::FILE* out) {
  std::fputs("usage: orvalen_driver COMMAND [OPTIONS]\n", out);
  for (const driver::Command& command : driver::Commands()) {
    std::fprintf(out, "  %-18s %s\n", command.name, command.usage);
  }
  std::fputs(
      "Windows are found by exact caption and/or class (or --hwnd from wait-window);\n"
      "lookups poll every 50 ms up to --timeout-ms (default 10000). Numbers may be hex (0x...).\n"
      "Texts print as UTF-8; --raw keeps the ANSI code page.\n",
      out);
}

int Run(int argc, char** argv) {
  if (argc < 2) {
    PrintUsage(stderr);
    return driver::kExitUsage;
  }
  const std::string name = argv[1];
  if (name == "help" || name == "--help" || name == "-h") {
    PrintUsage(stdout);
    return 0;
  }
  const driver::Command* command = nullptr;
  for (const driver::Command& candidate : driver::Commands()) {
    if (name == candidate.name) command = &candidate;
  }
  if (command == nullptr) driver::UsageError("unknown command '" + name + "' (try help)");

  const driver::Options options = driver::Options::Parse(argc, argv, 2);
  for (const std::string& option : options.Names()) {
    bool accepted = false;
    for (const std::string& known : command->accepts) accepted = accepted || known == option;
    if (!accepted) driver::UsageError("option --" + option + " does not apply to " + name);
  }
  driver::SetRawOutput(options.Flag("raw"));
  command->run(options);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  // Bash reads the output: no CR before each LF.
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  int status = 0;
  try {
    status = Run(argc, argv);
  } catch (const driver::Failure& failure) {
    const std::string message = driver::ToOutput(failure.message);
    std::fprintf(stderr, "orvalen_driver %s: %s\n", argc > 1 ? argv[1] : "", message.c_str());
    status = failure.exitCode;
  }
  std::fflush(stdout);
  return status;
}
