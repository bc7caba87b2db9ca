#include "Capture.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

/// The bare value in the model, made by an info of the type.
template <class Info, class Value>
std::string inModel(Value value) {
  const std::string list = capture(scrivo::modelFormat, [&](scrivo::Printer& p) {
    Info info(p, "");
    info.setValue(value);
    p.startList("l");
    p.addArgs("", info.getArg());
    p.endList();
  });
  return list.substr(5, list.size() - 6); // "l":[...]
}

std::string textInModel(const std::string& text) {
  return inModel<scrivo::StringAttrInfo>(text.c_str());
}

const std::string replacement = "\xef\xbf\xbd";

TEST(JsonText, EscapesEachByte) {
  for (int byte = 1; byte < 256; ++byte) {
    std::string expected(1, static_cast<char>(byte));
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(byte));
    if (byte < 0x20) expected = escape;
    if (byte == '"' || byte == '\\') expected.insert(0, "\\");
    if (byte >= 0x80) expected = replacement;
    EXPECT_EQ(textInModel("a" + std::string(1, static_cast<char>(byte)) + "b"),
              "\"a" + expected + "b\"");
  }
}

TEST(JsonText, KeepsWellFormedUtf8) {
  for (const char* const text :
       {"\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80", "\xed\x9f\xbf", "\xee\x80\x80", "\xef\xbf\xbf",
        "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf", "Z\xc3\xbcrich \xe2\x82\xac"}) {
    EXPECT_EQ(textInModel(text), "\"" + std::string(text) + "\"");
  }
}

TEST(JsonText, ReplacesEachMaximalPartOfBrokenUtf8) {
  const struct {
    const char* text;
    int replacements;
  } cases[] = {
      {"\x80", 1},
      {"\xc0\xaf", 2},                 // overlong
      {"\xe0\x80\xaf", 3},             // overlong
      {"\xed\xa0\x80", 3},             // a surrogate
      {"\xf4\x90\x80\x80", 4},         // past U+10FFFF
      {"\xf5\x80\x80\x80", 4},         // no lead byte
      {"\xfe\xff", 2},                 // never bytes of UTF-8
      {"\xc3", 1},                     // cut by the end
      {"\xf0\x9f\x98", 1},             // cut by the end: one part
      {"\xf0\x9f\xe2\x82", 2},         // two cut parts
      {"\xe1\x80\xe2\xf0\x91\x92", 3}, // three cut parts
  };
  for (const auto& [text, replacements] : cases) {
    std::string expected;
    for (int i = 0; i < replacements; ++i) expected += replacement;
    EXPECT_EQ(textInModel(std::string(text) + "!"), "\"" + expected + "!\"");
    EXPECT_EQ(textInModel(text), "\"" + expected + "\"");
  }
}

TEST(JsonText, WritesNumbers) {
  using namespace scrivo;
  EXPECT_EQ(inModel<IntAttrInfo>(std::numeric_limits<int>::min()), "-2147483648");
  EXPECT_EQ(inModel<UintAttrInfo>(std::numeric_limits<unsigned>::max()), "4294967295");
  EXPECT_EQ(inModel<Uint64AttrInfo>(std::numeric_limits<unsigned long long>::max()),
            "18446744073709551615");
  EXPECT_EQ(inModel<BoolAttrInfo>(true), "true");
  EXPECT_EQ(inModel<BoolAttrInfo>(false), "false");
  EXPECT_EQ(inModel<DoubleAttrInfo>(0.5f), "0.5");
}

TEST(JsonText, WritesDoublesThatReadBack) {
  using scrivo::DoubleAttrInfo;
  EXPECT_EQ(inModel<DoubleAttrInfo>(0.1), "0.1");
  for (const double number : {0.0, -1.5, 1e300, 5e-324, 1.0 / 3, 123456789.0}) {
    EXPECT_EQ(std::strtod(inModel<DoubleAttrInfo>(number).c_str(), nullptr), number);
  }
  for (const double number : {HUGE_VAL, -HUGE_VAL, double{NAN}}) {
    EXPECT_EQ(inModel<DoubleAttrInfo>(number), "null");
  }
}

TEST(JsonText, WritesTextsThatDoNotFitTheBuffer) {
  const std::string text(200'000, 'x');
  EXPECT_EQ(textInModel(text), "\"" + text + "\"");
  std::string escaped;
  for (int i = 0; i < 30'000; ++i) escaped += "\\u0001";
  EXPECT_EQ(textInModel(std::string(30'000, '\1')), "\"" + escaped + "\"");
}

} // namespace
