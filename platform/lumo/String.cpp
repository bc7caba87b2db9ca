#include "lumo/String.h"

#include "lumo/Exception.h"
#include "lumo/Ptr.h"

#include <cstring>
#include <limits>
#include <new>

namespace Lumo {

String::String(std::string_view text) {
  if (text.empty()) return;
  if (text.size() > std::numeric_limits<std::uint32_t>::max())
    throw RangeException("String too long");
  body_ = static_cast<Body*>(::operator new(sizeof(Body) + text.size() + 1));
  body_->references = 1;
  body_->length = static_cast<std::uint32_t>(text.size());
  std::memcpy(body_->text(), text.data(), text.size());
  body_->text()[text.size()] = '\0';
}

void String::retain() const noexcept { countUp(body_->references); }

void String::release() noexcept {
  if (countDown(body_->references) == 0) ::operator delete(body_);
}

String quoted(std::string_view text) {
  static constexpr char digits[] = "0123456789abcdef";
  std::string out = "'";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\'' || c == '\\') {
      out += '\\';
      out += c;
    } else if (byte < 0x20 || byte >= 0x7f) {
      out += "\\x";
      out += digits[byte >> 4];
      out += digits[byte & 15];
    } else {
      out += c;
    }
  }
  return String(out + "'");
}

} // namespace Lumo
