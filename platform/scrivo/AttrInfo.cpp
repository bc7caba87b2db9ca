#include "scrivo/AttrInfo.h"

#include "JsonText.h"
#include "scrivo/Printer.h"

#include <cstring>

namespace scrivo {

namespace {

/// A copy on the heap with a NUL behind it.
char* duplicate(const char* text, std::size_t length) {
  char* const copy = new char[length + 1];
  std::memcpy(copy, text, length);
  copy[length] = '\0';
  return copy;
}

} // namespace

AttrInfo::AttrInfo(const Printer& printer, const char* key, Kind kind, bool isKey)
    : isKey_(isKey),
      key_(key),
      kind_(kind),
      isKeyPlain_(isPlainJson(key)),
      colour_(colourOf(key)),
      format_(printer.format()),
      keyLength_(static_cast<std::uint32_t>(std::strlen(key))) {}

Tag Attr32Info::tag() const {
  if (kind() == Kind::integer) return Tag::int32;
  return kind() == Kind::uint ? Tag::uint32 : Tag::text;
}

IntAttrInfo::~IntAttrInfo() = default;

UintAttrInfo::~UintAttrInfo() = default;

void Uint64AttrInfo::setValue(unsigned long long value) { bitsAre(value); }
Uint64AttrInfo::~Uint64AttrInfo() = default;

void DoubleAttrInfo::setValue(double value) { bitsAre(std::bit_cast<std::uint64_t>(value)); }
// Not through the other setValue, which a derived info may have replaced.
void DoubleAttrInfo::setValue(float value) {
  bitsAre(std::bit_cast<std::uint64_t>(static_cast<double>(value)));
}
DoubleAttrInfo::~DoubleAttrInfo() = default;

void StringAttrInfo::setValue(char* text) { copy(text, text ? std::strlen(text) : 0); }
void StringAttrInfo::setValue(char* text, unsigned int length) { copy(text, length); }
void StringAttrInfo::setValue(Lumo::String text) { copy(text.c_str(), text.bytes()); }

StringAttrInfo::~StringAttrInfo() {
  if (owned_) freeOwned();
}

/// The text may be the one held so far, in the buffer or on the heap, or a part of it.
void StringAttrInfo::copy(const char* source, std::size_t length) {
  if (!source) return pointAt(nullptr);
  if (length >= bufferSize) {
    const char* const copied = duplicate(source, length);
    pointAt(copied);
    owned_ = true;
    return;
  }
  std::memmove(buffer_, source, length);
  buffer_[length] = '\0';
  pointAt(buffer_);
}

void StringAttrInfo::freeOwned() {
  delete[] text();
  owned_ = false;
}

BoolAttrInfo::~BoolAttrInfo() = default;

} // namespace scrivo
