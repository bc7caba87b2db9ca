// Strep text, reading.
//
// Each value has one text: what reads but would be written otherwise ("007", "2001:DB8::1") is
// refused, so that two texts that differ are two values that differ. Errors are `RangeException`s
// that name the position, counted from 0, and the attribute.
#pragma once

#include "lumo/Strep.h"

#include <cstddef>
#include <string_view>

namespace Lumo {

/// A place in a strep text.
class StringIterator {
 public:
  static StringIterator begin(std::string_view text) { return {text.data(), text.data()}; }
  static StringIterator end(std::string_view text) {
    return {text.data(), text.data() + text.size()};
  }

  /// Where it stands, in bytes from the beginning of the text.
  std::size_t position() const { return static_cast<std::size_t>(at_ - text_); }
  /// The text from here to another place of it.
  std::string_view upTo(const StringIterator& end) const {
    return {at_, static_cast<std::size_t>(end.at_ - at_)};
  }
  /// Goes on by so many bytes, which must be there.
  void advance(std::size_t bytes) { at_ += bytes; }

 private:
  StringIterator(const char* text, const char* at) : text_(text), at_(at) {}
  const char* text_;
  const char* at_;
};

/// Moves behind `literal`; anything else there is an error.
LUMO_EXPORT void needString(StringIterator& at, const StringIterator& end,
                            std::string_view literal);
/// Requires that nothing of `text` is left.
LUMO_EXPORT void strepToValueEnd(std::string_view text, const StringIterator& at);
/// Raises `exception` again with the attribute's name in front.
[[noreturn]] LUMO_EXPORT void rethrowFromDeserializeAttr(const RangeException& exception,
                                                         const char* attributeName);

/// Reads the stored attributes of `object`, a default value of a type without collections, and then
/// has it load itself if it does that. A type with a collection stops the process.
LUMO_EXPORT void readStrep(const TypeRecord& type, void* object, StringIterator& at,
                           const StringIterator& end);

// Of the leaves; each moves behind what it reads.
LUMO_EXPORT String takeQuoted(StringIterator& at, const StringIterator& end);
/// The characters of a number or a word.
LUMO_EXPORT std::string_view takeWord(StringIterator& at, const StringIterator& end);
/// The entity of that type that a text names, if it lives and was written; `writable` asks for one
/// that was written through a handle that lets it be changed.
LUMO_EXPORT const void* takeEntity(StringIterator& at, const StringIterator& end,
                                   const char* typeName, bool writable);
/// Raises the range error for a type whose texts nobody can read.
[[noreturn]] LUMO_EXPORT void throwUnreadable(const char* typeName);
/// Raises `exception` again with the position of `at`, unless it has one.
[[noreturn]] LUMO_EXPORT void rethrowAt(const RangeException& exception, const StringIterator& at);
/// Requires that `text`, which was read, is how its value is written.
LUMO_EXPORT void needCanonical(std::string_view text, const String& written);

/// A word as a value of an arithmetic type; `typeName` is what the error says was expected.
template <class T>
T wordToValue(std::string_view word, const char* typeName) {
  if constexpr (std::is_same_v<T, bool>) {
    if (word != "True" && word != "False") throw RangeException("expected True or False");
    return word == "True";
  } else {
    T value{};
    const auto [rest, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || rest != word.data() + word.size() || word.empty()) {
      throw RangeException(std::string("expected a number of type ") + typeName);
    }
    return value;
  }
}

/// What stands in "Value('NAME', ...)": a number, or a text in quotes.
template <class T>
T scalarToValue(StringIterator& at, const StringIterator& end) {
  constexpr bool hasText = valueFormOf<T>() != ValueForm::number;
  if (hasText && at.upTo(end).starts_with('\'')) {
    if constexpr (hasText) {
      if (const auto value = fromPlainText<T>(takeQuoted(at, end))) return *value;
    }
    throw RangeException(std::string("not the text of a ") + TypeName<T>::value);
  }
  if constexpr (requires { T::fromValue(std::uint64_t{}); }) {
    return T::fromValue(wordToValue<std::uint64_t>(takeWord(at, end), TypeName<T>::value));
  } else if constexpr (Numbered<T>) {
    return fromInteger<T>({wordToValue<std::uint64_t>(takeWord(at, end), TypeName<T>::value)});
  } else {
    throw RangeException("expected a text in quotes");
  }
}

/// Reads a value that is no record, in the form that `valueToStrep` writes.
template <class T>
T leafToValue(StringIterator& at, const StringIterator& end) {
  if constexpr (isHandle<T>) {
    using Entity = typename T::Element;
    return T(static_cast<Entity*>(
        const_cast<void*>(takeEntity(at, end, TypeName<Entity>::value, !std::is_const_v<Entity>))));
  } else if constexpr (std::is_arithmetic_v<T>) {
    return wordToValue<T>(takeWord(at, end), TypeName<T>::value);
  } else if constexpr (std::is_same_v<T, String>) {
    return takeQuoted(at, end);
  } else if constexpr (valueFormOf<T>() == ValueForm::none) {
    throwUnreadable(TypeName<T>::value);
  } else {
    needString(at, end, "Value('" + std::string(TypeName<T>::value) + "', ");
    T value = scalarToValue<T>(at, end);
    needString(at, end, ")");
    return value;
  }
}

/// Reads a value of any type that has a text.
template <class T>
T sequenceToValue(StringIterator& at, const StringIterator& end) {
  if constexpr (std::is_constructible_v<T, StringIterator&, const StringIterator&>) {
    return T(at, end);
  } else if constexpr (Attributed<T>) {
    T value{};
    readStrep(T::lumoType, &value, at, end);
    return value;
  } else {
    const StringIterator start = at;
    try {
      T value = leafToValue<T>(at, end);
      needCanonical(start.upTo(at), valueToStrep(value));
      return value;
    } catch (const RangeException& exception) {
      rethrowAt(exception, start);
    }
  }
}

} // namespace Lumo
