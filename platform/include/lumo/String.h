// Lumo::String: immutable text whose copies share one counted body.
#pragma once

#include "lumo/Export.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>

namespace Lumo {

/// Text of any bytes with a NUL behind it. Copies cost a count; the empty string owns nothing.
/// Counting follows the framework's switch `enableThreadSafePointers` (lumo/Ptr.h).
class LUMO_EXPORT String {
 public:
  String() = default;
  String(const char* text) : String(text ? std::string_view(text) : std::string_view()) {}
  String(const std::string& text) : String(std::string_view(text)) {}
  explicit String(std::string_view text);
  String(const String& other) noexcept : body_(other.body_) {
    if (body_) retain();
  }
  String(String&& other) noexcept : body_(other.body_) { other.body_ = nullptr; }
  String& operator=(const String& other) noexcept { return *this = String(other); }
  String& operator=(String&& other) noexcept {
    std::swap(body_, other.body_);
    return *this;
  }
  ~String() {
    if (body_) release();
  }

  /// The bytes with a NUL behind them, valid as long as a copy of the string.
  const char* c_str() const { return body_ ? body_->text() : ""; }
  /// The length in bytes.
  std::size_t bytes() const { return body_ ? body_->length : 0; }
  bool empty() const { return !body_; }
  /// The bytes, valid as long as a copy of the string.
  std::string_view view() const { return {c_str(), bytes()}; }
  operator std::string_view() const { return view(); }
  std::string str() const { return std::string(view()); }

  friend bool operator==(const String& a, const String& b) {
    return a.body_ == b.body_ || a.view() == b.view();
  }
  friend bool operator==(const String& a, const char* b) { return a.view() == b; }
  friend bool operator==(const String& a, std::string_view b) { return a.view() == b; }
  /// Byte order.
  friend bool operator<(const String& a, const String& b) { return a.view() < b.view(); }
  friend std::ostream& operator<<(std::ostream& out, const String& text) {
    return out << text.view();
  }
  std::size_t hash() const { return std::hash<std::string_view>{}(view()); }

 private:
  struct Body {
    std::uint32_t references;
    std::uint32_t length;
    const char* text() const { return reinterpret_cast<const char*>(this + 1); }
    char* text() { return reinterpret_cast<char*>(this + 1); }
  };
  // Both are for a string that has a body; most that are copied and dropped have none.
  void retain() const noexcept;
  void release() noexcept;

  Body* body_ = nullptr;
};

/// A name in a configuration: a string under a type of its own.
class Name : public String {
 public:
  using String::String;
  Name() = default;
  Name(const String& text) : String(text) {}
};

/// The text in single quotes with escapes for what is not printable, as strep texts hold it.
String quoted(std::string_view text);

} // namespace Lumo

template <>
struct std::hash<Lumo::String> {
  std::size_t operator()(const Lumo::String& text) const { return text.hash(); }
};
