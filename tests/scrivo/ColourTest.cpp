#include "scrivo/Colour.h"
#include "Capture.h"

#include <gtest/gtest.h>

namespace {

using namespace scrivo;

/// Colours in the time of a test.
struct ColourTest : testing::Test {
  ColourTest() { useColour(true); }
  ~ColourTest() override { useColour(false); }
};

/// The text of an attribute through a format.
template <class Info, class Value>
std::string shownAs(const char* key, RuntimeFormat format, Value value) {
  return capture(textFormat, [&](Printer& printer) {
    Info info(printer, key);
    info.setValue(value);
    printer.addAttributes(format, 1, info.getArg());
  });
}

std::string interfaceAs(const char* format, const char* text) {
  return shownAs<StringAttrInfo>("interface", RuntimeFormat(format), text);
}

TEST_F(ColourTest, WidthsCountWhatShows) {
  EXPECT_EQ(interfaceAs("%s|", "Et1"), "\x1b[36mEt1\x1b[0m|");
  EXPECT_EQ(interfaceAs("%-6s|", "Et1"), "\x1b[36mEt1\x1b[0m   |");
  EXPECT_EQ(interfaceAs("%6s|", "Et1"), "   \x1b[36mEt1\x1b[0m|");
  EXPECT_EQ(interfaceAs("%.2s|", "Et1"), "\x1b[36mEt\x1b[0m|");
  EXPECT_EQ(interfaceAs("%-8s|", "\n"), "\x1b[36m\\x0a\x1b[0m    |");
}

TEST_F(ColourTest, WhatDoesNotShowHasNone) {
  EXPECT_EQ(interfaceAs("%s|", ""), "|");
  EXPECT_EQ(interfaceAs("%s|", " "), " |");
  EXPECT_EQ(interfaceAs("%3s|", ""), "   |");
}

TEST_F(ColourTest, KindsGoByTheKey) {
  const auto start = [](const char* key) {
    const auto text = shownAs<StringAttrInfo>(key, RuntimeFormat("%s"), "x");
    return text.substr(0, text.find('x'));
  };
  EXPECT_EQ(start("prefix"), "\x1b[1m");
  EXPECT_EQ(start("nexthopAddr"), "\x1b[35m");
  EXPECT_EQ(start("hardwareProgrammed"), "\x1b[1;31m");
  EXPECT_EQ(start("viaWeight"), "");
  EXPECT_EQ(start(""), "");
  EXPECT_EQ(shownAs<UintAttrInfo>("interface", RuntimeFormat("%u"), 7u), "7");
}

TEST_F(ColourTest, WarningsLineByLine) {
  const auto warn = [](Printer& printer) { printer.addWarning("a\n\nb \nc"); };
  EXPECT_EQ(capture(textFormat, warn),
            "\x1b[1;31ma\x1b[0m\n\n\x1b[1;31mb \x1b[0m\n\x1b[1;31mc\x1b[0m");
  EXPECT_EQ(capture(modelFormat, warn), "");
  useColour(false);
  EXPECT_EQ(capture(textFormat, warn), "a\n\nb \nc");
}

TEST_F(ColourTest, StretchesKeepThem) {
  EXPECT_EQ(capture(textFormat,
                    [](Printer& printer) {
                      StringAttrInfo interface(printer, "interface");
                      Stretch stretch;
                      for (const char* name : {"Et1", "Et2"}) {
                        interface.setValue(name);
                        printer.addStretch(stretch,
                                           [&] { printer.addArgs("%s ", interface.getArg()); });
                      }
                    }),
            "\x1b[36mEt1\x1b[0m \x1b[36mEt1\x1b[0m ");
}

TEST_F(ColourTest, TheModelHasNone) {
  EXPECT_EQ(capture(modelFormat,
                    [](Printer& printer) {
                      StringAttrInfo interface(printer, "interface");
                      interface.setValue("Et1");
                      printer.addArgs("%s", interface.getArg());
                    }),
            "\"interface\":\"Et1\"");
}

} // namespace
