#include "Fault.h"

#include "Scan.h"
#include "Utf8.h"

#include <algorithm>
#include <vector>

namespace sources::snapshot {

namespace {

std::optional<Fault> findForeignBytes(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t bytes = characterBytes(text.substr(at));
    if (bytes == 0 && isCutCharacter(text.substr(at))) return {};
    if (bytes == 0) return Fault{at, "found bytes that are not UTF-8, expected UTF-8"};
    at += bytes;
  }
  return {};
}

/// Where the string ends whose first quote stands there.
std::size_t stringEnd(std::string_view text, std::size_t quote) {
  const char* const end = text.data() + text.size();
  return static_cast<std::size_t>(skipString(text.data() + quote + 1, end) - text.data());
}

std::optional<Fault> findControlCharacter(std::string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '"') continue;
    at = stringEnd(text, at);
    if (at == text.size() || text[at] == '"') continue;
    return Fault{at, "found a control character in a text, expected an escape such as \\n"};
  }
  return {};
}

/// Something that has begun.
struct Opened {
  std::size_t offset;
  std::string_view what;
};

/// What is innermost where a text ends early; nothing when all is closed, or not in its turn.
std::optional<Opened> openAtEnd(std::string_view text) {
  std::vector<std::size_t> open;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char byte = text[at];
    if (byte == '{' || byte == '[') open.push_back(at);
    if (byte == '}' || byte == ']') {
      if (open.empty() || (text[open.back()] == '{') != (byte == '}')) return {};
      open.pop_back();
    }
    if (byte != '"') continue;
    const std::size_t start = at;
    at = stringEnd(text, start);
    if (at == text.size()) return Opened{start, "text"};
  }
  if (open.empty()) return {};
  return Opened{open.back(), text[open.back()] == '{' ? "object" : "array"};
}

std::optional<Fault> findEarlyEnd(std::string_view text) {
  const auto open = openAtEnd(text);
  if (!open) return {};
  return Fault{text.size(), "the snapshot ends early, inside the " + std::string(open->what) +
                                " that begins at " + lineAndColumn(text, open->offset)};
}

} // namespace

std::optional<Fault> findFault(std::string_view text) {
  for (const auto find : {findForeignBytes, findControlCharacter, findEarlyEnd}) {
    if (auto fault = find(text)) return fault;
  }
  return {};
}

std::string lineAndColumn(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const auto lineStart = before.rfind('\n') + 1; // npos + 1 is 0: the first line
  return "line " + std::to_string(lines + 1) + ", column " + std::to_string(offset - lineStart + 1);
}

} // namespace sources::snapshot
