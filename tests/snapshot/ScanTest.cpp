// Eight bytes at a time the plain ones are passed over: none of the others, wherever it stands.
#include "sources/snapshot/Scan.h"

#include <gtest/gtest.h>

#include <string>

namespace {

bool isPlain(int byte) { return byte >= 0x20 && byte < 0x80 && byte != '"' && byte != '\\'; }

TEST(Scan, StopsAtEachByteThatIsNotPlainAtEachPlace) {
  for (int byte = 0; byte < 256; ++byte) {
    for (std::size_t length = 0; length < 20; ++length) {
      // Neighbours that differ by one are those that a carry would reach.
      for (const char before : {'a', '!', '#', '[', ']', ' ', '\x7f'}) {
        const auto text = std::string(length, before) + static_cast<char>(byte) + "\"!#[] \x80";
        const std::string padded = text + std::string(sources::snapshot::scanPadding, '\0');
        const char* const end = sources::snapshot::skipPlain(padded.data());
        EXPECT_EQ(end - padded.data(), static_cast<std::ptrdiff_t>(length + isPlain(byte)))
            << byte << " behind " << length << " of " << before;
      }
    }
  }
}

} // namespace
