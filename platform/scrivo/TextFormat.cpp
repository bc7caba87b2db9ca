#include "TextFormat.h"

#include "OutputBuffer.h"
#include "Pieces.h"
#include "lumo/Exception.h"
#include "scrivo/Format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

namespace scrivo {

void throwFormatFault(const char* format, FormatFault fault) {
  throw Lumo::InternalException("the format \"" + std::string(format) +
                                "\" does not fit its arguments: slot " +
                                std::to_string(fault.slot) + ": " + fault.what);
}

namespace {

/// A 64-bit number takes 20 digits.
constexpr std::size_t integerRoom = 24;
/// No double has more digits than these behind its point; all further ones are zeros.
constexpr int fractionLimit = 1074;
/// The largest double has 309 digits ahead of its point.
constexpr std::size_t realRoom = 309 + 1 + fractionLimit;
constexpr int usualFraction = 6;

/// What a slot prints, from left to right between its padding.
struct Field {
  bool isNegative = false;
  std::size_t leadingZeros = 0;
  std::string_view body;
  std::size_t trailingZeros = 0;
  bool takesZeros = false; ///< the flag `0` pads it with zeros
  Colour colour = Colour::none;

  std::size_t length() const { return isNegative + leadingZeros + body.size() + trailingZeros; }
};

std::string_view textOf(const AttrWord& word, int precision) {
  const bool isCut = precision != Slot::none;
  if (word.length() != AttrWord::unmeasured) {
    return std::string_view(word.text(), word.length()).substr(0, isCut ? precision : -1);
  }
  const char* const text = word.text() ? word.text() : "(null)";
  return {text, isCut ? strnlen(text, static_cast<std::size_t>(precision)) : std::strlen(text)};
}

/// Whether the text prints byte by byte. What is printable ASCII does, and is most of all.
bool printsAsIs(const AttrWord& word, std::string_view text) {
  return word.tag() == Tag::verbatim || isPlain(text);
}

LineEnds lineEndsOf(const AttrWord& word) {
  return word.tag() == Tag::lines ? LineEnds::kept : LineEnds::escaped;
}

/// One format over its words.
class FormatPrinter {
 public:
  FormatPrinter(OutputBuffer& out, FormatText format, const AttrWord* words, unsigned count)
      : out_(out), format_(format), words_(words), next_(words), end_(words + count) {}

  void print() {
    const char* at = format_.text();
    for (unsigned slot = 0;; ++slot, ++next_, at += 2) {
      const std::size_t length = format_.literalLength(slot);
      if (length != 0) out_.put(at, length);
      at += length;
      if (slot == format_.bareSlots() || next_ == end_ || !printBareSlot(at[1], *next_)) break;
    }
    while (*at != '\0') at = *at == '%' ? printSlot(at + 1) : printLiteral(at);
  }

 private:
  const char* printLiteral(const char* at) {
    const char* const end = skipLiteral(at);
    out_.put(at, static_cast<std::size_t>(end - at));
    return end;
  }

  /// \return the place behind the slot.
  const char* printSlot(const char* at) {
    Slot slot;
    const char* const behind = readSlot(at, slot);
    if (!behind) fail();
    if (slot.conversion == '%') return out_.put('%'), behind;
    resolveStars(slot);
    if (next_ == end_ || !fits(slot, next_->tag())) fail();
    printWord(slot, *next_++);
    return behind;
  }

  /// Most slots are "%s", "%d" or "%u" over a word of just that kind: they pass by the reading of
  /// flags and the layout of fields, which cost more than the printing. \return false for another.
  bool printBareSlot(char conversion, const AttrWord& word) {
    if (conversion == 's' && isText(word.tag())) {
      printBareText(word);
    } else if (conversion == 'u' && word.tag() == Tag::uint32) {
      printBareInteger(false, static_cast<std::uint32_t>(word.bits()));
    } else if (conversion == 'd' && word.tag() == Tag::int32) {
      const std::int64_t number = static_cast<std::int32_t>(word.bits());
      printBareInteger(number < 0, static_cast<std::uint64_t>(number < 0 ? -number : number));
    } else {
      return false;
    }
    return true;
  }

  void printBareText(const AttrWord& word) {
    const auto text = textOf(word, Slot::none);
    if (word.colour() != Colour::none) return printText({}, word);
    if (printsAsIs(word, text)) return out_.put(text);
    forEachPiece(text, lineEndsOf(word), [this](std::string_view piece) { out_.put(piece); });
  }

  void printBareInteger(bool isNegative, std::uint64_t magnitude) {
    char* const at = out_.reserve(integerRoom);
    *at = '-';
    out_.commit(std::to_chars(at + isNegative, at + integerRoom, magnitude).ptr);
  }

  /// A negative width is a width with the flag `-`; a negative precision is none.
  void resolveStars(Slot& slot) {
    if (slot.width == Slot::fromArgument) {
      const int width = takeStar();
      slot.left |= width < 0;
      slot.width = std::abs(std::max(width, -std::numeric_limits<int>::max()));
    }
    if (slot.precision == Slot::fromArgument) slot.precision = std::max(takeStar(), Slot::none);
  }

  int takeStar() {
    if (next_ == end_ || !fitsStar(next_->tag())) fail();
    return static_cast<int>(next_++->bits());
  }

  void printWord(const Slot& slot, const AttrWord& word) {
    switch (slot.conversion) {
    case 's':
      return printText(slot, word);
    case 'c':
      return printCharacter(slot, static_cast<char>(word.bits()));
    case 'f':
      return printReal(slot, word.real());
    case 'd':
      return printSigned(slot, word.bits());
    default:
      return printUnsigned(slot, word.bits());
    }
  }

  /// The precision cuts the text as it is; the width is that of the text as it shows.
  void printText(const Slot& slot, const AttrWord& word) {
    const auto text = textOf(word, slot.precision);
    if (printsAsIs(word, text)) return printField(slot, {.body = text, .colour = word.colour()});
    const std::string escaped = shown(text, lineEndsOf(word));
    printField(slot, {.body = escaped, .colour = word.colour()});
  }

  void printCharacter(const Slot& slot, char character) {
    printField(slot, {.body = std::string_view(&character, 1)});
  }

  void printSigned(const Slot& slot, std::uint64_t bits) {
    const std::int64_t number =
        slot.wide ? static_cast<std::int64_t>(bits) : static_cast<std::int32_t>(bits);
    const auto magnitude = static_cast<std::uint64_t>(number);
    printInteger(slot, number < 0, number < 0 ? 0 - magnitude : magnitude);
  }

  void printUnsigned(const Slot& slot, std::uint64_t bits) {
    printInteger(slot, false, slot.wide ? bits : static_cast<std::uint32_t>(bits));
  }

  void printInteger(const Slot& slot, bool isNegative, std::uint64_t magnitude) {
    if (slot.isBare() && (slot.conversion == 'd' || slot.conversion == 'u')) {
      return printBareInteger(isNegative, magnitude);
    }
    char digits[integerRoom];
    const bool isHex = (slot.conversion | 0x20) == 'x';
    char* const end = std::to_chars(digits, digits + sizeof digits, magnitude, isHex ? 16 : 10).ptr;
    if (slot.conversion == 'X') std::transform(digits, end, digits, ::toupper);
    const std::string_view body(digits, static_cast<std::size_t>(end - digits));
    printDigits(slot, isNegative, magnitude == 0 && slot.precision != Slot::none ? "" : body);
  }

  /// The precision of an integer is the least number of its digits; it overrules the flag `0`.
  void printDigits(const Slot& slot, bool isNegative, std::string_view digits) {
    const auto least = static_cast<std::size_t>(std::max(slot.precision, 0));
    printField(slot, {.isNegative = isNegative,
                      .leadingZeros = least > digits.size() ? least - digits.size() : 0,
                      .body = digits,
                      .takesZeros = slot.precision == Slot::none});
  }

  void printReal(const Slot& slot, double number) {
    const bool isNegative = std::signbit(number);
    if (std::isnan(number)) return printField(slot, {.isNegative = isNegative, .body = "nan"});
    if (std::isinf(number)) return printField(slot, {.isNegative = isNegative, .body = "inf"});
    const int precision = slot.precision == Slot::none ? usualFraction : slot.precision;
    const int digits = std::min(precision, fractionLimit);
    char text[realRoom];
    const char* const end =
        std::to_chars(text, text + sizeof text, std::fabs(number), std::chars_format::fixed, digits)
            .ptr;
    printField(slot, {.isNegative = isNegative,
                      .body = std::string_view(text, static_cast<std::size_t>(end - text)),
                      .trailingZeros = static_cast<std::size_t>(precision - digits),
                      .takesZeros = true});
  }

  void printField(const Slot& slot, Field field) {
    const std::size_t width = slot.width > 0 ? static_cast<std::size_t>(slot.width) : 0;
    std::size_t padding = width > field.length() ? width - field.length() : 0;
    if (slot.zero && !slot.left && field.takesZeros) {
      field.leadingZeros += std::exchange(padding, 0);
    }
    if (!slot.left) out_.fill(' ', padding);
    if (field.isNegative) out_.put('-');
    out_.fill('0', field.leadingZeros);
    field.colour == Colour::none ? out_.put(field.body)
                                 : putColoured(out_, field.body, field.colour);
    out_.fill('0', field.trailingZeros);
    if (slot.left) out_.fill(' ', padding);
  }

  /// Says what is wrong by the check that literals pass when compiled, now over the real tags.
  [[noreturn]] void fail() const {
    std::vector<Tag> tags;
    std::transform(words_, end_, std::back_inserter(tags), std::mem_fn(&AttrWord::tag));
    const auto count = static_cast<unsigned>(tags.size());
    throwFormatFault(format_.text(), findFormatFault(format_.text(), tags.data(), count));
  }

  OutputBuffer& out_;
  const FormatText format_;
  const AttrWord* words_;
  const AttrWord* next_;
  const AttrWord* end_;
};

} // namespace

void putColoured(OutputBuffer& out, std::string_view text, Colour colour) {
  if (text.find_first_not_of(' ') == text.npos) return out.put(text);
  out.put(startOf(colour));
  out.put(text);
  out.put(colourEnd);
}

void printFormat(OutputBuffer& out, FormatText format, const AttrWord* words, unsigned count) {
  FormatPrinter(out, format, words, count).print();
}

} // namespace scrivo
