// Texts from outside on a screen: what of them is escaped, and where.
#include "scrivo/Shown.h"
#include "Capture.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;
using scrivo::LineEnds;
using scrivo::shown;

TEST(Shown, EscapesWhatDoesNotShowAsItIs) {
  const struct {
    std::string text, expected;
  } cases[] = {
      {"", ""},
      {"core\\x1b \"~", "core\\x1b \"~"},
      {"a\x1b[2Jb\a\x7f\n", "a\\x1b[2Jb\\x07\\x7f\\x0a"},
      {"\0x"s, "\\x00x"},
      {"\xc2\x85|\xc2\x9b|\xc2\xa0", "\\x85|\\x9b|\xc2\xa0"},                 // C1 ends at 9f
      {"\xd8\x9c\xe2\x80\x8e\xe2\x80\x8f", "\\u061c\\u200e\\u200f"},          // marks of direction
      {"\xe2\x80\xa7\xe2\x80\xa8\xe2\x80\xa9", "\xe2\x80\xa7\\u2028\\u2029"}, // separators
      {"\xe2\x80\xaa\xe2\x80\xae\xe2\x80\xaf", "\\u202a\\u202e\xe2\x80\xaf"}, // embeddings
      {"\xe2\x81\xa5\xe2\x81\xa6\xe2\x81\xa9", "\xe2\x81\xa5\\u2066\\u2069"}, // isolates
      {"\x9b|\xff|\xc3", "\\x9b|\\xff|\\xc3"},                                // lone bytes
      {"\xc0\xaf\xed\xa0\x80", "\\xc0\\xaf\\xed\\xa0\\x80"},                  // overlong, surrogate
      {"\xf0\x9f\x98|\xe2\x80", "\\xf0\\x9f\\x98|\\xe2\\x80"},                // cut
      {"Z\xc3\xbcrich \xe2\x82\xac \xf0\x9f\x98\x80",
       "Z\xc3\xbcrich \xe2\x82\xac \xf0\x9f\x98\x80"},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(shown(text), expected);
    EXPECT_EQ(shown(expected), expected) << "escaped twice";
    EXPECT_EQ(scrivo::findHidden(text) == text.npos, text == expected);
  }
  EXPECT_EQ(shown("a\nb\r\n", LineEnds::kept), "a\nb\\x0d\n");
}

// The words of eight bytes overlap and end at every place.
TEST(Shown, KnowsPrintableAsciiAtEveryPlace) {
  for (std::size_t length = 0; length < 27; ++length) {
    EXPECT_TRUE(scrivo::isPlain(std::string(length, ' '))) << length;
    EXPECT_TRUE(scrivo::isPlain(std::string(length, '~'))) << length;
    for (std::size_t place = 0; place < length; ++place) {
      for (int byte = 0; byte < 256; ++byte) {
        std::string text(length, place % 2 ? ' ' : '~');
        text[place] = static_cast<char>(byte);
        ASSERT_EQ(scrivo::isPlain(text), byte >= 0x20 && byte < 0x7f) << length << ' ' << place;
      }
    }
  }
}

TEST(Shown, AttributesStayOnTheirLineAndFrillsMayHaveSeveral) {
  const auto walk = [](scrivo::Printer& p) {
    scrivo::StringAttrInfo name(p, "name");
    name.setValue("E\x1b\n1");
    p.addAttributes("%s\n[%9s][%-9s]\n", 3, name.getArg(), name.getArg(), name.getArg());
    p.addFrills("\t%s|%s|%s\n", name.getArg(), "a\x1b\n", scrivo::asValue("b\x1b\n"));
    p.addFrills("%s", scrivo::verbatim("c\x7f\n"));
    p.addFrills("[%8.3s][%-6.2s][%.*s]\n", "\xc3\xbc\x1b!", "\xc3\xbc!", 1, "\xc3\xbc");
  };
  EXPECT_EQ(capture(scrivo::textFormat, walk), "E\\x1b\\x0a1\n[E\\x1b\\x0a1][E\\x1b\\x0a1]\n"
                                               "\tE\\x1b\\x0a1|a\\x1b\n|b\\x1b\\x0a\n"
                                               "c\x7f\n"
                                               "[  \xc3\xbc\\x1b][\xc3\xbc    ][\\xc3]\n");
  EXPECT_EQ(capture(scrivo::modelFormat, walk).substr(0, 23), "\"name\":\"E\\u001b\\u000a1\"");
}

TEST(Shown, LongTextsPassTheBuffer) {
  std::string text, expected;
  for (int i = 0; i < 40'000; ++i) text += "ab\x1b", expected += "ab\\x1b";
  EXPECT_EQ(capture(scrivo::textFormat, [&](scrivo::Printer& p) { p.addFrills("%s", text); }),
            expected);
}

} // namespace
