#include "lumo/StrepReader.h"

#include "lumo/Assert.h"
#include "lumo/NamedEntities.h"
#include "lumo/Type.h"

#include <algorithm>
#include <string>

namespace Lumo {

namespace {

constexpr std::string_view positionWord = "position ";

[[noreturn]] void fail(const StringIterator& at, const std::string& what) {
  throw RangeException(std::string(positionWord) + std::to_string(at.position()) + ": " + what);
}

/// What stands at a place, short enough for a message.
std::string found(std::string_view rest) {
  constexpr std::size_t shown = 20;
  if (rest.empty()) return "the end";
  return quoted(rest.substr(0, shown)).str() + (rest.size() > shown ? "..." : "");
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

/// The character behind a backslash; moves `text` behind it. -1 for what is no escape.
int takeEscape(std::string_view& text) {
  if (text.empty()) return -1;
  const char kind = text.front();
  text.remove_prefix(1);
  if (kind == '\'' || kind == '\\') return static_cast<unsigned char>(kind);
  if (kind != 'x' || text.size() < 2) return -1;
  const int high = hexDigit(text[0]), low = hexDigit(text[1]);
  text.remove_prefix(2);
  return high < 0 || low < 0 ? -1 : high * 16 + low;
}

bool isWordCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '+' ||
         c == '-' || c == '.';
}

} // namespace

void needString(StringIterator& at, const StringIterator& end, std::string_view literal) {
  const auto rest = at.upTo(end);
  if (!rest.starts_with(literal)) {
    fail(at, "expected " + quoted(literal).str() + ", found " + found(rest));
  }
  at.advance(literal.size());
}

void strepToValueEnd(std::string_view text, const StringIterator& at) {
  const auto rest = at.upTo(StringIterator::end(text));
  if (!rest.empty()) fail(at, "expected the end, found " + found(rest));
}

void rethrowFromDeserializeAttr(const RangeException& exception, const char* attributeName) {
  throw RangeException(std::string("attribute ") + attributeName + ", " + exception.what());
}

void rethrowAt(const RangeException& exception, const StringIterator& at) {
  if (std::string_view(exception.what()).starts_with(positionWord)) throw exception;
  fail(at, exception.what());
}

String takeQuoted(StringIterator& at, const StringIterator& end) {
  needString(at, end, "'");
  std::string text;
  std::string_view rest = at.upTo(end);
  const auto whole = rest.size();
  while (!rest.empty() && rest.front() != '\'') {
    int c = static_cast<unsigned char>(rest.front());
    rest.remove_prefix(1);
    if (c == '\\') c = takeEscape(rest);
    if (c < 0) fail(at, "a backslash that begins no escape");
    text += static_cast<char>(c);
  }
  at.advance(whole - rest.size());
  needString(at, end, "'");
  return String(text);
}

std::string_view takeWord(StringIterator& at, const StringIterator& end) {
  const auto rest = at.upTo(end);
  const auto length = static_cast<std::size_t>(
      std::find_if_not(rest.begin(), rest.end(), isWordCharacter) - rest.begin());
  at.advance(length);
  return rest.substr(0, length);
}

const void* takeEntity(StringIterator& at, const StringIterator& end, const char* typeName,
                       bool writable) {
  constexpr std::string_view none = "None";
  if (at.upTo(end).starts_with(none)) {
    at.advance(none.size());
    return nullptr;
  }
  needString(at, end, "Ptr('" + std::string(typeName) + "', 0x");
  const StringIterator start = at;
  const auto word = takeWord(at, end);
  std::uintptr_t address = 0;
  const auto [rest, error] = std::from_chars(word.data(), word.data() + word.size(), address, 16);
  const bool isNumber = error == std::errc() && rest == word.data() + word.size();
  const void* const entity =
      isNumber ? namedEntity(typeName, reinterpret_cast<const void*>(address), writable) : nullptr;
  if (!entity) fail(start, "no " + std::string(typeName) + " of this process stands there");
  needString(at, end, ")");
  return entity;
}

void throwUnreadable(const char* typeName) {
  throw RangeException(std::string("a ") + typeName + " cannot be read from text");
}

void needCanonical(std::string_view text, const String& written) {
  if (text != written.view()) throw RangeException("write it as " + written.str());
}

void readStrep(const TypeRecord& type, void* object, StringIterator& at,
               const StringIterator& end) {
  if (!type.isReadable()) {
    const std::string text =
        "!\"No String constructor for " + std::string(shortName(type)) + " - has collection\"";
    assertionFailed(text.c_str());
  }
  bool first = true;
  for (const AttributeRecord& row : type.attributes) {
    if (!isStored(row.kind)) continue;
    if (first) needString(at, end, "Value('" + std::string(type.name) + "', ** {");
    needString(at, end, std::string(first ? "'" : ", '") + row.name + "': ");
    first = false;
    try {
      row.readStrep(object, at, end);
    } catch (const RangeException& exception) {
      rethrowFromDeserializeAttr(exception, row.name);
    }
  }
  if (!first) needString(at, end, "})");
  if (type.handleInitialized) type.handleInitialized(object);
}

} // namespace Lumo
