#include "command/filter/Pattern.h"

namespace command::filter {

namespace {

/// The bytes of the character that stands at a place.
std::size_t characterLength(std::string_view text, std::size_t at) {
  std::size_t length = 1;
  while (at + length < text.size() && (text[at + length] & 0xc0) == 0x80) ++length;
  return length;
}

} // namespace

/// Where the text goes on otherwise than the pattern, the last "*" takes one character more. To
/// come back to an earlier one is of no use: what it could take more, the last one can take as
/// well.
bool fits(std::string_view text, std::string_view pattern) {
  std::size_t inText = 0, inPattern = 0;
  std::size_t star = pattern.npos, behindStar = 0; // where the last "*" stands, and its text ends
  while (inText < text.size()) {
    const char next = inPattern < pattern.size() ? pattern[inPattern] : '\0';
    if (next == '*') {
      star = inPattern++;
      behindStar = inText;
    } else if (next == '?') {
      inText += characterLength(text, inText);
      ++inPattern;
    } else if (inPattern < pattern.size() && next == text[inText]) {
      ++inText;
      ++inPattern;
    } else if (star != pattern.npos) {
      behindStar += characterLength(text, behindStar);
      inText = behindStar;
      inPattern = star + 1;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', inPattern) == pattern.npos;
}

} // namespace command::filter
