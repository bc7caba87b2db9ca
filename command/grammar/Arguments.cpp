#include "command/grammar/Arguments.h"

#include "command/grammar/UsageError.h"

#include <algorithm>
#include <utility>

namespace command::grammar {

namespace {

/// Splits by hand: a stream would take a failed allocation for the end of its input.
void appendWords(std::string_view text, std::vector<std::string>& words) {
  constexpr std::string_view blanks = " \t\n\v\f\r";
  for (;;) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    if (text.empty()) return;
    const auto length = std::min(text.find_first_of(blanks), text.size());
    words.emplace_back(text.substr(0, length));
    text.remove_prefix(length);
  }
}

void give(const Option& option, std::string_view name, std::string_view value, Arguments& out) {
  if (option.kind != Kind::none && !read(option.kind, value).value) {
    failOption(name, "takes " + std::string(rowOf(option.kind).expected) + ", found \"" +
                         std::string(value) + "\"");
  }
  out.options.push_back({&option, std::string(value)});
}

/// An option, whose value stands behind "=" or is the next argument.
void takeOption(const Grammar& grammar, std::string_view argument, Arguments& out) {
  const auto equals = argument.find('=');
  const auto name = argument.substr(0, equals);
  const Option* const option = findOption(grammar, name);
  if (!option) failOption(name, "does not exist");
  const bool hasValue = equals != argument.npos;
  if (option->kind == Kind::none && hasValue) failOption(name, "takes no value");
  if (option->kind != Kind::none && !hasValue) {
    out.open = option;
    return;
  }
  give(*option, name, hasValue ? argument.substr(equals + 1) : "", out);
}

using AppendWords = void(std::string_view text, std::vector<std::string>& words);

void appendWhole(std::string_view text, std::vector<std::string>& words) {
  words.emplace_back(text);
}

void takeArgument(const Grammar& grammar, std::string_view argument, AppendWords* append,
                  Arguments& out) {
  if (const Option* const option = std::exchange(out.open, nullptr)) {
    give(*option, option->name, argument, out);
  } else if (out.onlyWords || argument == "-" || !argument.starts_with('-')) {
    out.named = true;
    append(argument, out.words);
  } else if (argument == "--") {
    out.onlyWords = true;
  } else {
    takeOption(grammar, argument, out);
  }
}

/// A "| json" at the end of the words is an option with that value.
void takePipe(const Grammar& grammar, Arguments& out) {
  const auto count = out.words.size();
  if (count < 2 || out.words[count - 2] != "|") return;
  for (const Option& option : grammar.options) {
    if (!option.piped || !read(option.kind, out.words.back()).value) continue;
    out.options.push_back({&option, out.words.back()});
    out.words.resize(count - 2);
    out.piped = true;
    return;
  }
}

} // namespace

const std::string* Arguments::find(std::string_view name) const {
  const std::string* found = nullptr;
  for (const GivenOption& given : options) {
    if (given.option->name == name) found = &given.value;
  }
  return found;
}

Arguments splitArguments(const Grammar& grammar, std::span<const char* const> arguments) {
  Arguments out;
  for (const char* argument : arguments) takeArgument(grammar, argument, appendWords, out);
  takePipe(grammar, out);
  return out;
}

Arguments sortWords(const Grammar& grammar, std::span<const std::string> words) {
  Arguments out;
  for (const auto& word : words) takeArgument(grammar, word, appendWhole, out);
  return out;
}

void failOption(std::string_view name, const std::string& message) {
  throw UsageError("rova: option " + std::string(name) + " " + message +
                   "\n  rova --help lists the options");
}

} // namespace command::grammar
