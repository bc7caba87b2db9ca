// Formats and their check: which slots a format has, and whether the arguments fit them. One
// parser serves the check, at compile time or at run time, and the printing.
//
// A slot is %, flags (`-` and `0`), a width (a number or `*`), a precision (`.` with a number, `*`
// or nothing) and a conversion: d i u x X c s f, and lu llu ld lld zu and their like. "%%" is a
// percent sign. Numbers in a slot have at most four digits.
#pragma once

#include "scrivo/Word.h"

#include <cstdint>

namespace scrivo {

/// One slot of a format, as written.
struct Slot {
  static constexpr int none = -1;         ///< no width, no precision
  static constexpr int fromArgument = -2; ///< `*`: an argument ahead of the value tells it

  int width = none;
  int precision = none;
  bool left = false;
  bool zero = false;
  bool wide = false;   ///< l, ll or z stands before the conversion
  char conversion = 0; ///< one of d u x X c s f, or % for the sign itself

  /// Whether neither width nor precision is given, so that the value is written as it is.
  constexpr bool isBare() const { return width == none && precision == none; }
};

/// A number or `*` at `at`, moved behind it; `none` if there is neither. Five digits are too many:
/// the fifth stays where it is and spoils the conversion.
constexpr int readSlotNumber(const char*& at) {
  if (*at == '*') return ++at, Slot::fromArgument;
  if (*at < '0' || *at > '9') return Slot::none;
  int number = 0;
  for (int digits = 0; digits < 4 && *at >= '0' && *at <= '9'; ++digits) {
    number = number * 10 + (*at++ - '0');
  }
  return number;
}

/// Flags, width and precision.
constexpr void readSlotLayout(const char*& at, Slot& slot) {
  for (; *at == '-' || *at == '0'; ++at) (*at == '-' ? slot.left : slot.zero) = true;
  slot.width = readSlotNumber(at);
  if (*at != '.') return;
  slot.precision = readSlotNumber(++at);
  if (slot.precision == Slot::none) slot.precision = 0;
}

/// Reads the slot behind a percent sign.
/// \return the place behind the slot, or null if it is none of those above.
constexpr const char* readSlot(const char* at, Slot& slot) {
  if (*at == '%') return slot.conversion = '%', at + 1;
  readSlotLayout(at, slot);
  const char* const length = at;
  if (*at == 'z')
    ++at;
  else
    while (*at == 'l' && at - length < 2) ++at;
  slot.wide = at != length;
  switch (*at) {
  case 'i':
    slot.conversion = 'd';
    return at + 1;
  case 'd':
  case 'u':
  case 'x':
  case 'X':
    slot.conversion = *at;
    return at + 1;
  case 'c':
  case 's':
  case 'f':
    slot.conversion = *at;
    return slot.wide ? nullptr : at + 1;
  default:
    return nullptr;
  }
}

/// The place of the next slot, or of the end.
constexpr const char* skipLiteral(const char* at) {
  while (*at != '\0' && *at != '%') ++at;
  return at;
}

/// A format as the printer takes it, with what the compiler has measured: where its leading slots
/// are, as far as they are bare ("%s", "%d", "%u"). A scan for them costs more than printing them.
class FormatText {
 public:
  explicit constexpr FormatText(const char* format) : text_(format), measures_(measured(format)) {}

  constexpr const char* text() const { return text_; }
  /// Whether it prints nothing: the format of a value for the model alone.
  constexpr bool isEmpty() const { return *text_ == '\0'; }
  /// The bare slots that it begins with, at most `slotLimit`.
  constexpr unsigned bareSlots() const { return measures_ >> (8 * (slotLimit + 1)); }
  /// The length of the literal ahead of each of them, and of that behind the last: what a scan
  /// begins with is at that place.
  constexpr std::size_t literalLength(unsigned slot) const {
    return measures_ >> (8 * slot) & 0xff;
  }

 private:
  static constexpr unsigned slotLimit = 6;

  static constexpr std::uint64_t measured(const char* at) {
    std::uint64_t measures = 0;
    for (std::uint64_t slot = 0;; ++slot) {
      const char* const literal = at;
      at = skipLiteral(at);
      if (at - literal > 0xff) return measures | slot << (8 * (slotLimit + 1)); // scanned for
      measures |= static_cast<std::uint64_t>(at - literal) << (8 * slot);
      const bool isBare = *at == '%' && (at[1] == 's' || at[1] == 'd' || at[1] == 'u');
      if (!isBare || slot == slotLimit) return measures | slot << (8 * (slotLimit + 1));
      at += 2;
    }
  }

  const char* text_;
  std::uint64_t measures_; // a byte a literal, the number of slots in the highest
};

/// True if an argument of the tag may stand in the slot: the kind is the slot's, and an integer is
/// not cut. `any` may stand anywhere, for its own check comes when it is printed.
constexpr bool fits(const Slot& slot, Tag tag) {
  if (tag == Tag::any) return true;
  if (slot.conversion == 's') return isText(tag);
  if (slot.conversion == 'f') return tag == Tag::real;
  if (tag == Tag::int32 || tag == Tag::uint32) return true;
  return slot.wide && (tag == Tag::int64 || tag == Tag::uint64);
}

/// True if an argument of the tag may tell a width or a precision.
constexpr bool fitsStar(Tag tag) {
  return tag == Tag::any || tag == Tag::int32 || tag == Tag::uint32;
}

/// What is wrong with a format; `what` is null if nothing is. `slot` counts from 1.
struct FormatFault {
  const char* what = nullptr;
  unsigned slot = 0;
};

/// Holds a format against the tags of its arguments. Arguments without a slot are no fault.
constexpr FormatFault findFormatFault(const char* format, const Tag* tags, unsigned count) {
  unsigned used = 0;
  unsigned slots = 0;
  for (const char* at = format; *at;) {
    if (*at++ != '%') continue;
    Slot slot;
    at = readSlot(at, slot);
    ++slots;
    if (!at) return {"it is not a known conversion", slots};
    if (slot.conversion == '%') continue;
    for (const int number : {slot.width, slot.precision}) {
      if (number != Slot::fromArgument) continue;
      if (used == count) return {"it has no argument for its *", slots};
      if (!fitsStar(tags[used++])) return {"its * needs an int", slots};
    }
    if (used == count) return {"it has no argument", slots};
    if (!fits(slot, tags[used++])) return {"its argument is of another type", slots};
  }
  return {};
}

/// Throws Lumo::InternalException that names the format, the slot and the fault.
[[noreturn]] LUMO_EXPORT void throwFormatFault(const char* format, FormatFault fault);

/// A format that is not known when compiling: `printer.addFrills(RuntimeFormat(text), value)`.
/// It is held against its arguments when the call is made, which throws Lumo::InternalException if
/// they do not fit.
class RuntimeFormat {
 public:
  explicit constexpr RuntimeFormat(const char* text) : text_(text) {}
  constexpr const char* text() const { return text_; }

 private:
  const char* text_;
};

/// A format that fits arguments of the types `Args`. A literal that does not fit them does not
/// compile: the compiler then reports the call of `throwFormatFault`, which is no constant.
template <class... Args>
class FormatFor {
 public:
  consteval FormatFor(const char* text) : text_(text) { check(); }
  FormatFor(RuntimeFormat format) : text_(format.text()) { check(); }
  constexpr FormatText text() const { return text_; }

 private:
  constexpr void check() const {
    constexpr Tag tags[] = {tagOf<Args>()..., Tag::any}; // never empty
    const FormatFault fault = findFormatFault(text_.text(), tags, sizeof...(Args));
    if (fault.what) throwFormatFault(text_.text(), fault);
  }

  FormatText text_;
};

/// The count of a call with `count` words. Another number does not compile.
template <int count>
class WordCount {
 public:
  consteval WordCount(int number) {
    if (number != count) throw "the count is not the number of words";
  }
};

} // namespace scrivo
