#include "command/diff/DiffFields.h"

#include "command/filter/Field.h"
#include "command/grammar/Arguments.h"
#include "command/grammar/Line.h"

#include <algorithm>

namespace command {

namespace {

/// The prefix and its length are not: routes are compared by them. The vias of a route count as
/// long as `vias` is not left out, whatever of each of them is.
bool isIgnorable(const filter::Field& field) { return !field.keys[0].empty(); }

/// The place behind a string that begins at `at`.
std::size_t skipString(std::string_view json, std::size_t at) {
  while (json[++at] != '"') {
    if (json[at] == '\\') ++at;
  }
  return at + 1;
}

/// The place behind a value that begins at `at`: at what ends it in the object that it stands in.
std::size_t skipValue(std::string_view json, std::size_t at) {
  for (int depth = 0;; ++at) {
    if (json[at] == '"') at = skipString(json, at);
    const char byte = json[at];
    const bool closes = byte == '}' || byte == ']';
    if (depth == 0 && (closes || byte == ',')) return at;
    if (byte == '{' || byte == '[') ++depth;
    if (closes) --depth;
  }
}

/// The place behind a member whose key ends at `at`, and behind one of the commas beside it: the
/// one at the end of what is `left` ahead of it, or else its own.
std::size_t skipMember(std::string_view json, std::size_t at, std::string& left) {
  at = skipValue(json, at + 1);
  if (left.back() != ',') return json[at] == ',' ? at + 1 : at;
  left.pop_back();
  return at;
}

} // namespace

IgnoredFields::IgnoredFields(std::string_view names) {
  while (!names.empty()) {
    const auto length = std::min(names.find(','), names.size());
    add(names.substr(0, length));
    names.remove_prefix(std::min(length + 1, names.size()));
  }
}

void IgnoredFields::add(std::string_view name) {
  const auto* const field = filter::findField(name);
  if (!field || !isIgnorable(*field)) {
    grammar::failOption("--ignore", "has no field \"" + std::string(name) + "\": expected " +
                                        grammar::listOf(ignorableFields()));
  }
  for (const auto key : field->keys) {
    if (!key.empty()) keys_.push_back(key);
  }
}

bool IgnoredFields::has(std::string_view key) const {
  return std::find(keys_.begin(), keys_.end(), key) != keys_.end();
}

/// A string with a ":" behind it is a key, and nothing else is.
std::string IgnoredFields::without(std::string_view entry) const {
  std::string left;
  std::size_t at = 0;
  for (auto quote = entry.find('"'); quote != entry.npos; quote = entry.find('"', at)) {
    left += entry.substr(at, quote - at);
    at = skipString(entry, quote);
    const bool isKey = entry.substr(at, 1) == ":";
    if (isKey && has(entry.substr(quote + 1, at - quote - 2))) {
      at = skipMember(entry, at, left);
    } else {
      left += entry.substr(quote, at - quote);
    }
  }
  left += entry.substr(at);
  return left;
}

std::vector<std::string> ignorableFields() {
  std::vector<std::string> names;
  for (const filter::Field& field : filter::fields()) {
    if (isIgnorable(field)) names.emplace_back(field.name);
  }
  return names;
}

} // namespace command
