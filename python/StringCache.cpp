#include "StringCache.h"

#include "Errors.h"

#include <cstdint>
#include <cstring>

namespace rova_python {

namespace {

using Word = std::uint64_t;

template <class Part>
Word load(const char* at) {
  Part part;
  std::memcpy(&part, at, sizeof part);
  return part;
}

/// Calls `take` with words that hold all bytes of the text, some of them twice.
template <class Take>
void forEachWord(std::string_view bytes, Take take) {
  const char* const end = bytes.data() + bytes.size();
  if (bytes.size() > sizeof(Word)) {
    for (const char* at = bytes.data(); at < end - sizeof(Word); at += sizeof(Word)) {
      take(load<Word>(at));
    }
    take(load<Word>(end - sizeof(Word)));
  } else if (bytes.size() >= sizeof(std::uint32_t)) {
    take(load<std::uint32_t>(bytes.data()) << 32 | load<std::uint32_t>(end - 4));
  } else if (!bytes.empty()) {
    const auto byteAt = [&](std::size_t at) { return Word{static_cast<std::uint8_t>(bytes[at])}; };
    take(byteAt(0) << 16 | byteAt(bytes.size() / 2) << 8 | byteAt(bytes.size() - 1));
  }
}

Word mixed(std::string_view bytes) {
  Word hash = bytes.size();
  forEachWord(bytes, [&hash](Word word) {
    hash = (hash ^ word) * 0x9e3779b97f4a7c15u;
    hash ^= hash >> 29;
  });
  return hash;
}

bool isAscii(std::string_view bytes) {
  Word all = 0;
  forEachWord(bytes, [&all](Word word) { all |= word; });
  return (all & 0x8080808080808080u) == 0;
}

/// An ASCII text without a second look at its bytes.
Ref asciiText(std::string_view bytes) {
  Ref text = owned(PyUnicode_New(static_cast<Py_ssize_t>(bytes.size()), 0x7f));
  std::memcpy(PyUnicode_1BYTE_DATA(text.get()), bytes.data(), bytes.size());
  return text;
}

bool isText(PyObject* text, std::string_view bytes) {
  return static_cast<std::size_t>(PyUnicode_GET_LENGTH(text)) == bytes.size() &&
         std::memcmp(PyUnicode_1BYTE_DATA(text), bytes.data(), bytes.size()) == 0;
}

} // namespace

Ref StringCache::text(std::string_view bytes) {
  if (!isAscii(bytes)) {
    return owned(PyUnicode_FromStringAndSize(bytes.data(), static_cast<Py_ssize_t>(bytes.size())));
  }
  if (bytes.size() > longest) return asciiText(bytes);
  Ref& kept = kept_[mixed(bytes) % places];
  if (!kept || !isText(kept.get(), bytes)) return kept = asciiText(bytes);
  if (use_ == Use::keys && !PyUnicode_CHECK_INTERNED(kept.get())) {
    PyObject* text = kept.release();
    PyUnicode_InternInPlace(&text);
    kept = Ref::steal(text);
  }
  return kept;
}

} // namespace rova_python
