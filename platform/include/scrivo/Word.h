// Words: the typed arguments of a format. `getArg()` makes them of attributes, `addFrills` of plain
// values.
#pragma once

#include "lumo/Export.h"
#include "scrivo/Colour.h"

#include <bit>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace scrivo {

class AttrInfo;

/// What a word holds. `any` stands only in static types: it says that the tag of the word is known
/// when the program runs, no sooner. Texts print as they show (scrivo/Shown.h): those of `text`,
/// the values of attributes, on one line; those of `lines` keep their line feeds; those of
/// `verbatim` are printed byte by byte.
enum class Tag : std::uint8_t {
  any,
  int32,
  uint32,
  int64,
  uint64,
  real,
  text,
  lines,
  verbatim,
  info,
};

/// Whether an argument so tagged is a text, whatever its escapes.
constexpr bool isText(Tag tag) { return tag >= Tag::text && tag <= Tag::verbatim; }

/// One argument: in text the value, in the model the address of the attribute info that has it.
class AttrWord {
 public:
  /// The tag as far as the type tells it: here the word itself has it.
  static constexpr Tag staticTag = Tag::any;

  constexpr AttrWord(Tag tag, std::uint64_t bits, Colour colour = Colour::none)
      : bits_(bits), length_(unmeasured), colour_(colour), tag_(tag) {}
  /// A text of known length, or one that a NUL ends. A null pointer is the text "(null)".
  AttrWord(Tag tag, std::string_view text, Colour colour = Colour::none)
      : bits_(std::bit_cast<std::uint64_t>(text.data())),
        length_(text.size()),
        colour_(colour),
        tag_(tag) {}
  AttrWord(Tag tag, const char* text) : AttrWord(tag, std::bit_cast<std::uint64_t>(text)) {}
  explicit AttrWord(double number) : AttrWord(Tag::real, std::bit_cast<std::uint64_t>(number)) {}
  explicit AttrWord(const AttrInfo& info)
      : AttrWord(Tag::info, std::bit_cast<std::uint64_t>(&info)) {}

  constexpr Tag tag() const { return tag_; }
  constexpr std::uint64_t bits() const { return bits_; }
  /// The colour of a text; other words have none.
  constexpr Colour colour() const { return colour_; }
  /// The argument as what its tag says that it is:
  double real() const { return std::bit_cast<double>(bits_); }
  const char* text() const { return std::bit_cast<const char*>(bits_); }
  /// The length of a text in bytes, or `unmeasured` when a NUL ends it.
  std::uint64_t length() const { return length_; }
  /// The attribute info, where the tag says that it is one.
  const AttrInfo& info() const { return *std::bit_cast<const AttrInfo*>(bits_); }

  /// The length of a text that nobody has measured.
  static constexpr std::uint64_t unmeasured = (std::uint64_t{1} << 48) - 1;

 private:
  std::uint64_t bits_; // 32-bit numbers stand extended by their own sign
  std::uint64_t length_ : 48;
  Colour colour_ : 8;
  Tag tag_ : 8;
};

/// A word whose text form is known to the compiler, so that a format can be checked against it.
/// In the model its tag is `info` all the same.
template <Tag known>
class TypedWord : public AttrWord {
 public:
  static constexpr Tag staticTag = known;
  explicit constexpr TypedWord(AttrWord word) : AttrWord(word) {}
};

using IntWord = TypedWord<Tag::int32>;
using UintWord = TypedWord<Tag::uint32>;
using Uint64Word = TypedWord<Tag::uint64>;
using DoubleWord = TypedWord<Tag::real>;
using TextWord = TypedWord<Tag::text>;

template <class T>
concept IsWord = std::is_base_of_v<AttrWord, T>;

/// Integers and unscoped enumerations: what arithmetic promotes.
template <class T>
concept IsPromotable = (std::is_integral_v<T> || std::is_enum_v<T>)&&requires(T value) {
  +value;
};

/// The tag of a plain integer after promotion, by its width and sign.
template <class T>
constexpr Tag integerTag() {
  using Promoted = decltype(+T{});
  if (sizeof(Promoted) > 4) return std::is_signed_v<Promoted> ? Tag::int64 : Tag::uint64;
  return std::is_signed_v<Promoted> ? Tag::int32 : Tag::uint32;
}

/// What the compiler knows of an argument of the type: the tag its word will have.
template <class T>
constexpr Tag tagOf() {
  if constexpr (IsWord<T>) {
    return T::staticTag;
  } else if constexpr (IsPromotable<T>) {
    return integerTag<T>();
  } else if constexpr (std::is_floating_point_v<T>) {
    return Tag::real;
  } else {
    static_assert(std::is_convertible_v<const T&, std::string_view>,
                  "a printed value is a word, a number, a character or a text");
    return Tag::text;
  }
}

/// The word of a plain value; a word stays itself. A text is not copied: the word serves within
/// the call it is made for.
template <class T>
AttrWord toWord(const T& value) {
  if constexpr (IsWord<T>) {
    return value;
  } else if constexpr (IsPromotable<T>) {
    return {integerTag<T>(), static_cast<std::uint64_t>(+value)};
  } else if constexpr (std::is_floating_point_v<T>) {
    return AttrWord(static_cast<double>(value));
  } else if constexpr (std::is_convertible_v<const T&, const char*>) {
    return AttrWord(Tag::lines, static_cast<const char*>(value));
  } else {
    return AttrWord(Tag::lines, static_cast<std::string_view>(value));
  }
}

/// A plain text that prints as the value of an attribute does, on one line: for the names and
/// descriptions of a device among the frills. Like every word of a plain text it serves within the
/// call that it is made for.
inline TextWord asValue(std::string_view text, Colour colour = Colour::none) {
  return TextWord(AttrWord(Tag::text, text, colour));
}

/// A text that prints byte by byte: for what this program wrote itself, such as JSON.
inline TextWord verbatim(std::string_view text) { return TextWord(AttrWord(Tag::verbatim, text)); }

} // namespace scrivo
