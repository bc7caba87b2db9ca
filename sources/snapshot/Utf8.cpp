#include "Utf8.h"

namespace sources::snapshot {

namespace {

/// RFC 3629, section 4: the lead bytes of each form, and the range of the byte behind them. All
/// further bytes are 0x80 to 0xbf.
struct Form {
  unsigned char firstLead, lastLead;
  unsigned char minSecond, maxSecond;
  std::size_t bytes;
};
constexpr Form forms[] = {
    {0xc2, 0xdf, 0x80, 0xbf, 2}, {0xe0, 0xe0, 0xa0, 0xbf, 3}, {0xe1, 0xec, 0x80, 0xbf, 3},
    {0xed, 0xed, 0x80, 0x9f, 3}, {0xee, 0xef, 0x80, 0xbf, 3}, {0xf0, 0xf0, 0x90, 0xbf, 4},
    {0xf1, 0xf3, 0x80, 0xbf, 4}, {0xf4, 0xf4, 0x80, 0x8f, 4},
};

bool fits(const Form& form, std::string_view text) {
  if (text.size() < form.bytes) return false;
  const auto second = static_cast<unsigned char>(text[1]);
  if (second < form.minSecond || second > form.maxSecond) return false;
  for (std::size_t i = 2; i < form.bytes; ++i) {
    if ((text[i] & 0xc0) != 0x80) return false;
  }
  return true;
}

} // namespace

std::size_t characterBytes(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return 1;
  for (const Form& form : forms) {
    if (lead >= form.firstLead && lead <= form.lastLead) return fits(form, text) ? form.bytes : 0;
  }
  return 0;
}

} // namespace sources::snapshot
