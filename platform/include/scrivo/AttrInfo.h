// Attribute infos: named values on their way to the printer. A render makes each once, sets new
// values into it from row to row, and hands `getArg()` to the printer:
//
//     scrivo::UintAttrInfo metric(printer, "metric");
//     metric.setValue(20);
//     printer.addAttributes("/%u", 1, metric.getArg());
#pragma once

#include "lumo/Assert.h"
#include "lumo/String.h"
#include "scrivo/Word.h"

#include <cstddef>
#include <cstdint>

namespace scrivo {

class Printer;

/// The output formats by their numbers. Any other number is a fault of the program.
enum Format : unsigned { textFormat = 1, modelFormat = 2 };

/// How the printer writes a value into the model. The numbers are fixed, and 5 is not in use.
enum class Kind : std::uint32_t {
  integer = 0,
  string = 1,
  boolean = 2,
  uint64 = 3,
  uint = 4,
  real = 6,
};

/// What all infos share: the name of the value in the model and whether there is a value yet.
/// The key text is not copied and must outlive the info. An empty key makes the value an element
/// of a list or the value of a simple entry; in any other place it adds nothing to the model.
/// An info with `isKey` is the key of a simple dictionary entry and adds nothing to the model.
class LUMO_EXPORT AttrInfo {
 public:
  AttrInfo(const AttrInfo&) = delete;
  AttrInfo& operator=(const AttrInfo&) = delete;

  bool isKey() const { return isKey_; }
  const char* key() const { return key_; }
  std::uint32_t keyLength() const { return keyLength_; }
  /// True if the key stands in the model as it is, without any escape.
  bool isKeyPlain() const { return isKeyPlain_; }
  Kind kind() const { return kind_; }
  bool hasValue() const { return hasValue_; }
  /// The output format of the printer that the info was made from.
  unsigned format() const { return format_; }
  /// The colour of the value in text, by its key.
  Colour colour() const { return colour_; }

 protected:
  AttrInfo(const Printer& printer, const char* key, Kind kind, bool isKey);
  ~AttrInfo() = default;

  void valueStored() { hasValue_ = true; }
  /// The word for the printer: `bits` under `tag` in text, the info's address in the model.
  /// Fails the assertion `hasValue` without a value, `0` on an unknown format.
  AttrWord word(Tag tag, std::uint64_t bits) const {
    LUMO_ASSERT(hasValue_, "hasValue");
    if (format_ == textFormat) return {tag, bits, colour_};
    LUMO_ASSERT(format_ == modelFormat, "0");
    return AttrWord(*this);
  }

 private:
  bool isKey_;
  const char* key_;
  Kind kind_;
  bool hasValue_ = false;
  bool isKeyPlain_;
  Colour colour_;
  unsigned format_;
  std::uint32_t keyLength_;
};

/// A value of one machine word: a 32-bit number, a Boolean or a pointer to text.
class LUMO_EXPORT Attr32Info : public AttrInfo {
 public:
  /// The value as an argument of a format.
  AttrWord getArg() const { return word(tag(), bits_); }
  std::uint64_t bits() const { return bits_; }
  /// The text of a string; the pointer is the caller's or the info's.
  const char* text() const { return std::bit_cast<const char*>(bits_); }

 protected:
  using AttrInfo::AttrInfo;
  ~Attr32Info() = default;
  void bitsAre(std::uint64_t bits) {
    bits_ = bits;
    valueStored();
  }
  void textIs(const char* text) { bitsAre(std::bit_cast<std::uint64_t>(text)); }

 private:
  Tag tag() const;

  std::uint64_t bits_ = 0;
};

/// A value of 64 bits: an unsigned number or the bits of a double.
class LUMO_EXPORT Attr64Info : public AttrInfo {
 public:
  AttrWord getArg() const { return word(kind() == Kind::real ? Tag::real : Tag::uint64, bits_); }
  std::uint64_t bits() const { return bits_; }

 protected:
  using AttrInfo::AttrInfo;
  ~Attr64Info() = default;
  void bitsAre(std::uint64_t bits) {
    bits_ = bits;
    valueStored();
  }

 private:
  std::uint64_t bits_ = 0;
};

/// A signed number of 32 bits; "%d" in text.
class LUMO_EXPORT IntAttrInfo : public Attr32Info {
 public:
  IntAttrInfo(const Printer& printer, const char* key, bool isKey = false)
      : Attr32Info(printer, key, Kind::integer, isKey) {}
  virtual void setValue(int value) { bitsAre(static_cast<std::uint64_t>(value)); }
  virtual ~IntAttrInfo();
  IntWord getArg() const { return IntWord(word(Tag::int32, bits())); }
};

/// An unsigned number of 32 bits; "%u" in text.
class LUMO_EXPORT UintAttrInfo : public Attr32Info {
 public:
  UintAttrInfo(const Printer& printer, const char* key, bool isKey = false)
      : Attr32Info(printer, key, Kind::uint, isKey) {}
  virtual void setValue(unsigned int value) { bitsAre(value); }
  virtual ~UintAttrInfo();
  UintWord getArg() const { return UintWord(word(Tag::uint32, bits())); }
};

/// An unsigned number of 64 bits; "%llu" in text.
class LUMO_EXPORT Uint64AttrInfo : public Attr64Info {
 public:
  Uint64AttrInfo(const Printer& printer, const char* key, bool isKey = false)
      : Attr64Info(printer, key, Kind::uint64, isKey) {}
  virtual void setValue(unsigned long long value);
  virtual ~Uint64AttrInfo();
  Uint64Word getArg() const { return Uint64Word(word(Tag::uint64, bits())); }
};

/// A floating-point number; "%f" in text. What is not finite is null in the model.
class LUMO_EXPORT DoubleAttrInfo : public Attr64Info {
 public:
  DoubleAttrInfo(const Printer& printer, const char* key, bool isKey = false)
      : Attr64Info(printer, key, Kind::real, isKey) {}
  virtual void setValue(double value);
  virtual void setValue(float value);
  virtual ~DoubleAttrInfo();
  DoubleWord getArg() const { return DoubleWord(word(Tag::real, bits())); }
};

/// A text; "%s". Texts of up to 99 bytes cost no allocation. A text ends at its first NUL in both
/// outputs; a null pointer shows as "(null)" in text and as null in the model.
class LUMO_EXPORT StringAttrInfo : public Attr32Info {
 public:
  StringAttrInfo(const Printer& printer, const char* key, bool isKey = false)
      : Attr32Info(printer, key, Kind::string, isKey) {}
  /// Keeps the pointer alone: for literals and tables that outlive the use of the attribute.
  virtual void setValue(const char* text) { pointAt(text); }
  /// Copies the text.
  virtual void setValue(char* text);
  /// Copies `length` bytes of the text.
  virtual void setValue(char* text, unsigned int length);
  /// Copies the text.
  virtual void setValue(Lumo::String text);
  virtual ~StringAttrInfo();
  TextWord getArg() const { return TextWord(word(Tag::text, bits())); }

  /// The room of the buffer in bytes, the NUL among them. Fixed by the interface.
  static constexpr std::size_t bufferSize = 100;
  /// Whether the text was copied here and is freed with the object.
  bool isOwned() const { return owned_; }

 protected:
  /// Points the value at a text that the caller keeps, and frees the copy held so far.
  void pointAt(const char* text) {
    if (owned_) freeOwned();
    textIs(text);
  }

 private:
  void copy(const char* text, std::size_t length);
  void freeOwned();

  char buffer_[bufferSize];
  bool owned_ = false;
};

/// A Boolean; "%s" in text, where it shows as a word or a mark.
class LUMO_EXPORT BoolAttrInfo : public Attr32Info {
 public:
  BoolAttrInfo(const Printer& printer, const char* key, bool isKey = false)
      : Attr32Info(printer, key, Kind::boolean, isKey) {}
  /// Shows as "True" or "False".
  virtual void setValue(bool value) { store(value, value ? "True" : "False"); }
  virtual ~BoolAttrInfo();
  TextWord getArg() const { return TextWord(word(Tag::text, bits())); }

 protected:
  /// Stores `shown` in text and `value` in the model. `shown` is not copied: it lies in a buffer
  /// of the derived info or in a literal. Fails the assertion `0` on an unknown format.
  void store(bool value, const char* shown) {
    if (format() == textFormat) return textIs(shown);
    LUMO_ASSERT(format() == modelFormat, "0");
    bitsAre(value ? 1 : 0);
  }
};

} // namespace scrivo
