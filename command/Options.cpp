#include "command/Options.h"

#include "command/Words.h"

#include <optional>
#include <string_view>

namespace command {

namespace {

[[noreturn]] void failOption(std::string_view option, const std::string& message) {
  throw UsageError("rova: option " + std::string(option) + " " + message +
                   "\n  rova --help lists the options");
}

OutputFormat parseFormat(std::string_view option, std::string_view value) {
  if (value == "text") return text;
  if (value == "json") return json;
  failOption(option, "takes text or json, found \"" + std::string(value) + "\"");
}

/// The standard output has another use: a command that changes a snapshot shows there what it did.
std::string parseFile(std::string_view option, std::string_view value) {
  if (!value.empty() && value != "-") return std::string(value);
  failOption(option, "takes the name of a file, found \"" + std::string(value) + "\"");
}

/// An option of the table: one with a value, or a switch.
struct OptionRow {
  std::string_view name;
  bool hasValue;
  void (*apply)(Options& options, std::string_view name, std::string_view value);
};

constexpr OptionRow rows[] = {
    {"--state", true, [](Options& o, std::string_view, std::string_view v) { o.state = v; }},
    {"--format", true,
     [](Options& o, std::string_view n, std::string_view v) { o.format = parseFormat(n, v); }},
    {"--timing", false, [](Options& o, std::string_view, std::string_view) { o.timing = true; }},
    {"--older-nexthop-groups", false,
     [](Options& o, std::string_view, std::string_view) { o.olderNexthopGroups = true; }},
    {"--counters", false,
     [](Options& o, std::string_view, std::string_view) { o.counters = true; }},
    {"--into", true,
     [](Options& o, std::string_view n, std::string_view v) { o.into = parseFile(n, v); }},
    {"--dry-run", false, [](Options& o, std::string_view, std::string_view) { o.dryRun = true; }},
    {"--help", false, [](Options& o, std::string_view, std::string_view) { o.help = true; }},
    {"-h", false, [](Options& o, std::string_view, std::string_view) { o.help = true; }},
    {"--version", false, [](Options& o, std::string_view, std::string_view) { o.version = true; }},
};

const OptionRow& rowOf(std::string_view name) {
  for (const OptionRow& row : rows) {
    if (row.name == name) return row;
  }
  failOption(name, "does not exist");
}

} // namespace

Options parseOptions(std::span<const char* const> arguments, std::vector<const char*>& rest) {
  Options options;
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    const std::string_view whole = arguments[at];
    if (whole == "--") {
      rest.insert(rest.end(), arguments.begin() + static_cast<std::ptrdiff_t>(at) + 1,
                  arguments.end());
      break;
    }
    if (whole == "-" || whole.substr(0, 1) != "-") {
      rest.push_back(arguments[at]);
      continue;
    }
    const auto equals = whole.find('=');
    const auto name = whole.substr(0, equals);
    const OptionRow& row = rowOf(name);
    std::optional<std::string_view> value;
    if (equals != whole.npos) value = whole.substr(equals + 1);
    if (value && !row.hasValue) failOption(name, "takes no value");
    if (row.hasValue && !value) {
      if (++at == arguments.size()) failOption(name, "needs a value");
      value = arguments[at];
    }
    row.apply(options, name, value.value_or(""));
  }
  return options;
}

} // namespace command
