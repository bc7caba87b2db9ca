#include "command/grammar/Help.h"

#include "command/grammar/Syntax.h"
#include "command/grammar/Table.h"

namespace command::grammar {

namespace {

/// The options of a command, or all of them for null.
std::string optionTable(const Grammar& grammar, const Command* command) {
  std::vector<Row> rows;
  for (const Option& option : grammar.options) {
    if (command && !takesOption(*command, option)) continue;
    rows.push_back({syntaxOf(option), std::string(option.help)});
  }
  return "\noptions:\n" + tableOf(rows);
}

std::string commandList(const Grammar& grammar, const std::vector<const Command*>& commands) {
  std::string text = "commands (words may be abbreviated):\n";
  for (const Command* command : commands) {
    for (const auto& line : syntaxOf(grammar, *command)) text += "  " + line + "\n";
    text += "      " + std::string(command->help) + "\n";
  }
  return text;
}

/// The part, and below it the words that can be chosen for it.
void appendRows(const Part& part, std::vector<Row>& rows) {
  rows.push_back({syntaxOf(part), std::string(part.help)});
  if (!rowOf(part.kind).closed) return;
  for (const Word& word : rowOf(part.kind).words) {
    if (word.refusal.empty())
      rows.push_back({"  " + std::string(word.text), std::string(word.help)});
  }
}

std::string commandHelp(const Grammar& grammar, const Command& command) {
  std::string text;
  for (const auto& line : syntaxOf(grammar, command)) {
    text += (text.empty() ? "usage: rova " : "       rova ") + line + "\n";
  }
  text += "\n" + std::string(command.help) + "\n";
  std::vector<Row> rows;
  for (const Part& part : command.parts) appendRows(part, rows);
  if (!rows.empty()) text += "\n" + tableOf(rows);
  return text + optionTable(grammar, &command);
}

std::string wholeHelp(const Grammar& grammar, const Path& path) {
  return "usage: rova [OPTION...] COMMAND... [OPTION...]\n\n" +
         commandList(grammar, path.commands()) + optionTable(grammar, nullptr) +
         std::string(grammar.notes);
}

std::string beginningHelp(const Grammar& grammar, const Path& path) {
  return "usage: rova " + path.words() + " ...\n\n" + std::string(path.help()) + "\n\n" +
         commandList(grammar, path.commands());
}

} // namespace

std::string helpText(const Grammar& grammar, const Path& path) {
  if (const Topic* const topic = path.topic()) return topic->text();
  if (const Command* const command = path.command()) return commandHelp(grammar, *command);
  return path.words().empty() ? wholeHelp(grammar, path) : beginningHelp(grammar, path);
}

std::string helpText(const Grammar& grammar, const std::vector<std::string>& words) {
  const Line line(words);
  Path path(grammar);
  for (std::size_t at = 0; at < line.size() && !path.command(); ++at) path.take(line, at);
  return helpText(grammar, path);
}

std::string choicesText(const Choices& choices, bool mayEnd) {
  std::vector<Row> rows;
  for (const Choice& choice : choices) {
    const auto& left = choice.word.empty() ? rowOf(choice.kind).placeholder : choice.word;
    rows.push_back({std::string(left), std::string(choice.help)});
  }
  if (mayEnd) rows.push_back({"<cr>", "the line as it is"});
  return tableOf(rows);
}

} // namespace command::grammar
