// Command-line options of the driver and the failures a command reports.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace driver {

// Thrown by commands; main prints the message on stderr and exits with the code.
struct Failure {
  int exitCode;
  std::string message;
};

constexpr int kExitFailed = 1;  // the check failed or timed out
constexpr int kExitUsage = 2;   // the command line is wrong

[[noreturn]] void Fail(const std::string& message);
[[noreturn]] void UsageError(const std::string& message);

// "--name value" pairs and bare "--flag"s after the command word. Which names a
// command accepts is checked by the command table, so a typo fails loudly
// instead of being ignored by a test script.
class Options {
 public:
  static Options Parse(int argc, char** argv, int first);

  bool Has(const std::string& name) const;
  bool Flag(const std::string& name) const { return flags_.count(name) != 0; }
  std::optional<std::string> Str(const std::string& name) const;
  std::string RequiredStr(const std::string& name) const;
  std::optional<long long> Int(const std::string& name) const;
  long long RequiredInt(const std::string& name) const;
  std::vector<std::string> Names() const;

 private:
  std::map<std::string, std::string> values_;
  std::set<std::string> flags_;
};

// Decimal, 0x hex or negative; the whole text must be a number.
std::optional<long long> ParseNumber(const std::string& text);

}  // namespace driver
