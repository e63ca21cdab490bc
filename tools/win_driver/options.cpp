#include "options.h"

#include <cerrno>
#include <cstdlib>

namespace driver {

namespace {

// Options that stand alone; every other option takes the next argument.
const std::set<std::string> kFlagNames = {"any-visibility", "force", "raw", "delete"};

}  // namespace

void Fail(const std::string& message) { throw Failure{kExitFailed, message}; }

void UsageError(const std::string& message) { throw Failure{kExitUsage, message}; }

std::optional<long long> ParseNumber(const std::string& text) {
  if (text.empty()) return std::nullopt;
  const char* begin = text.c_str();
  char* end = nullptr;
  errno = 0;
  long long value = 0;
  if (text[0] == '-') {
    value = std::strtoll(begin, &end, 0);
  } else {
    // Unsigned so that full 64-bit values (handles, lParams) pass through.
    value = static_cast<long long>(std::strtoull(begin, &end, 0));
  }
  if (errno != 0 || end == begin || *end != '\0') return std::nullopt;
  return value;
}

Options Options::Parse(int argc, char** argv, int first) {
  Options options;
  for (int i = first; i < argc; ++i) {
    std::string arg = argv[i];
    if (arg.size() < 3 || arg.compare(0, 2, "--") != 0) UsageError("unexpected argument '" + arg + "'");
    std::string name = arg.substr(2);
    if (options.Has(name)) UsageError("option --" + name + " given twice");
    if (kFlagNames.count(name) != 0) {
      options.flags_.insert(name);
      continue;
    }
    if (i + 1 >= argc) UsageError("option --" + name + " needs a value");
    // The value may itself start with "--" or be empty (--title ""): take it as is.
    options.values_[name] = argv[++i];
  }
  return options;
}

bool Options::Has(const std::string& name) const {
  return values_.count(name) != 0 || flags_.count(name) != 0;
}

std::optional<std::string> Options::Str(const std::string& name) const {
  auto it = values_.find(name);
  if (it == values_.end()) return std::nullopt;
  return it->second;
}

std::string Options::RequiredStr(const std::string& name) const {
  auto value = Str(name);
  if (!value) UsageError("missing --" + name);
  return *value;
}

std::optional<long long> Options::Int(const std::string& name) const {
  auto text = Str(name);
  if (!text) return std::nullopt;
  auto value = ParseNumber(*text);
  if (!value) UsageError("--" + name + " wants a number, got '" + *text + "'");
  return value;
}

long long Options::RequiredInt(const std::string& name) const {
  auto value = Int(name);
  if (!value) UsageError("missing --" + name);
  return *value;
}

std::vector<std::string> Options::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : values_) names.push_back(entry.first);
  for (const auto& flag : flags_) names.push_back(flag);
  return names;
}

}  // namespace driver
