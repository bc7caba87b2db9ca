// Text that shares its body between copies.
#include "lumo/String.h"
#include "support/Expect.h"

#include <gtest/gtest.h>
#include <memory>
#include <utility>

namespace {

using Lumo::String;

TEST(StringTest, MakesTheSameTextFromEverySource) {
  const struct {
    String text;
    std::string_view expected;
  } cases[] = {
      {String(), ""},
      {String(static_cast<const char*>(nullptr)), ""},
      {String(""), ""},
      {String("eth"), "eth"},
      {String(std::string("a\0b", 3)), std::string_view("a\0b", 3)},
      {String(std::string_view("Ethernet1/1", 8)), "Ethernet"},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(text.view(), expected);
    EXPECT_EQ(text.bytes(), expected.size());
    EXPECT_EQ(text.empty(), expected.empty());
    EXPECT_EQ(text.c_str()[text.bytes()], '\0');
    EXPECT_TRUE(text == expected);
  }
}

TEST(StringTest, CopiesShareTheirBodyAndOutliveTheOriginal) {
  auto original = std::make_unique<String>("default");
  const String copy = *original;
  EXPECT_EQ(copy.c_str(), original->c_str());
  original.reset();
  EXPECT_EQ(copy.str(), "default");
  String text = copy;
  String& alias = text;
  text = alias;
  text = std::move(alias);
  EXPECT_EQ(text.str(), "default") << "assigned to itself";
  const String moved(std::move(text));
  text = "blue";
  EXPECT_EQ(moved.str() + text.str(), "defaultblue");
}

TEST(StringTest, OrdersByBytes) {
  // Ascending; "10" before "9" and bytes above 0x7f last.
  const String ascending[] = {"", "10", "9", "A", "Aa", "a", "\xc3\xa9"};
  support::expectAscending(ascending);
  EXPECT_EQ(String("Aa").hash(), String(std::string("Aa")).hash());
}

} // namespace
