#include "Utf8.h"

#include <algorithm>

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

/// The form of the character that a text begins with; null when it begins with none of several
/// bytes.
const Form* formOf(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  for (const Form& form : forms) {
    if (lead >= form.firstLead && lead <= form.lastLead) return &form;
  }
  return nullptr;
}

/// Whether the bytes behind the lead, as far as they are there, are those of the form.
bool continues(const Form& form, std::string_view text) {
  const auto second = static_cast<unsigned char>(text.size() > 1 ? text[1] : form.minSecond);
  if (second < form.minSecond || second > form.maxSecond) return false;
  for (std::size_t i = 2; i < std::min(form.bytes, text.size()); ++i) {
    if ((text[i] & 0xc0) != 0x80) return false;
  }
  return true;
}

} // namespace

std::size_t characterBytes(std::string_view text) {
  if (static_cast<unsigned char>(text[0]) < 0x80) return 1;
  const Form* const form = formOf(text);
  return form && text.size() >= form->bytes && continues(*form, text) ? form->bytes : 0;
}

bool isCutCharacter(std::string_view text) {
  const Form* const form = formOf(text);
  return form && text.size() < form->bytes && continues(*form, text);
}

// The lead byte of a form begins with as many bits as the form has bytes.
void appendCharacter(std::string& out, std::uint32_t code) {
  const unsigned further = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  const unsigned lead = further == 0 ? 0 : 0xf00u >> (further + 1) & 0xff;
  out += static_cast<char>(lead | code >> 6 * further);
  for (unsigned left = further; left-- > 0;) {
    out += static_cast<char>(0x80 | (code >> 6 * left & 0x3f));
  }
}

} // namespace sources::snapshot
