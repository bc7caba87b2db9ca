#include "command/grammar/Syntax.h"

namespace command::grammar {

namespace {

std::string withArgument(std::string_view name, Kind kind) {
  if (kind == Kind::none) return std::string(name);
  return std::string(name) + " " + std::string(rowOf(kind).placeholder);
}

/// A part with those that go with it, in brackets unless it is required.
std::string inLine(const Command& command, const Part& part) {
  std::string text = syntaxOf(part);
  for (const Part& other : command.parts) {
    if (other.needs == part.name) text += " [" + syntaxOf(other) + "]";
  }
  return part.required ? text : "[" + text + "]";
}

/// The command with all parts that go with any others.
std::string mainForm(const Grammar& grammar, const Command& command) {
  std::string line(command.path);
  for (const Part& part : command.parts) {
    if (part.needs.empty() && part.beside.empty()) line += " " + inLine(command, part);
  }
  for (const Option& option : grammar.options) {
    const bool isOwn = option.scope == Scope::named && takesOption(command, option);
    if (isOwn) line += " [" + withArgument(option.name, option.kind) + "]";
  }
  return line;
}

/// The command with the parts that go beside that one alone; empty if there are none.
std::string formBeside(const Command& command, const Part& part) {
  std::string choice;
  for (const Part& other : command.parts) {
    if (other.beside == part.name) choice += (choice.empty() ? "" : "|") + syntaxOf(other);
  }
  if (choice.empty()) return {};
  return std::string(command.path) + " " + inLine(command, part) + " " + choice;
}

} // namespace

std::string syntaxOf(const Part& part) {
  switch (part.keyword) {
  case Keyword::needed:
    return withArgument(part.name, part.kind);
  case Keyword::optional:
    return withArgument("[" + std::string(part.name) + "]", part.kind);
  case Keyword::none:
    break;
  }
  return std::string(rowOf(part.kind).placeholder) + (part.repeats ? "..." : "");
}

std::string syntaxOf(const Option& option) {
  const auto text = withArgument(option.name, option.kind);
  return option.shortName.empty() ? text : text + ", " + std::string(option.shortName);
}

std::vector<std::string> syntaxOf(const Grammar& grammar, const Command& command) {
  std::vector<std::string> lines{mainForm(grammar, command)};
  for (const Part& part : command.parts) {
    if (auto line = formBeside(command, part); !line.empty()) lines.push_back(std::move(line));
  }
  return lines;
}

} // namespace command::grammar
