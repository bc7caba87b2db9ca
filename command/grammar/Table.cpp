#include "command/grammar/Table.h"

#include <algorithm>
#include <string_view>

namespace command::grammar {

namespace {

constexpr std::size_t lineWidth = 80;

/// Appends a text broken between words, each line but the first behind `indent` blanks; the first
/// begins there.
void appendBroken(std::string_view text, std::size_t indent, std::string& out) {
  while (text.size() > lineWidth - indent) {
    const auto blank = text.rfind(' ', lineWidth - indent);
    if (blank == text.npos) break;
    out.append(text.substr(0, blank)).append("\n").append(indent, ' ');
    text.remove_prefix(blank + 1);
  }
  out.append(text).append("\n");
}

} // namespace

std::string tableOf(const std::vector<Row>& rows) {
  constexpr std::size_t margin = 2;
  std::size_t width = 0;
  for (const Row& row : rows) width = std::max(width, row.left.size());
  std::string text;
  for (const Row& row : rows) {
    text.append(margin, ' ').append(row.left).append(width - row.left.size() + margin, ' ');
    appendBroken(row.right, width + 2 * margin, text);
  }
  return text;
}

} // namespace command::grammar
