#include "Capture.h"

#include <gtest/gtest.h>

namespace {

using namespace scrivo;

/// A printer whose output nobody reads.
struct OpenPrinter {
  explicit OpenPrinter(unsigned format) : printer(sink.fd(), format, true, false, true, 0) {}
  Sink sink;
  Printer printer;
};

/// A mark in a buffer of its own, as displays derive it.
class MarkInfo : public BoolAttrInfo {
 public:
  using BoolAttrInfo::BoolAttrInfo;
  void setValue(bool value) override {
    mark_[0] = value ? ' ' : '*';
    store(value, mark_);
  }

 private:
  char mark_[2] = {};
};

TEST(AttrInfo, GivesTheValueInTextAndItselfInTheModel) {
  OpenPrinter text(textFormat), model(modelFormat);
  IntAttrInfo shown(text.printer, "n"), named(model.printer, "n");
  EXPECT_FALSE(shown.hasValue());
  shown.setValue(-5);
  named.setValue(-5);
  EXPECT_EQ(static_cast<std::int64_t>(shown.getArg().bits()), -5);
  EXPECT_EQ(&named.getArg().info(), &named);
  BoolAttrInfo up(text.printer, "up");
  up.setValue(true);
  EXPECT_STREQ(up.text(), "True");
  up.setValue(false);
  EXPECT_STREQ(up.text(), "False");
}

TEST(AttrInfo, DerivedBooleansShowTheirMark) {
  const auto walk = [](Printer& p) {
    MarkInfo mark(p, "programmed");
    BoolAttrInfo& base = mark;
    base.setValue(false);
    p.addAttributes("<%s>", 1, base.getArg());
  };
  EXPECT_EQ(capture(textFormat, walk), "<*>");
  EXPECT_EQ(capture(modelFormat, walk), R"("programmed":false)");
}

TEST(StringAttrInfo, CopiesWhereItMust) {
  OpenPrinter opened(textFormat);
  for (const std::size_t length : {0u, 1u, 98u, 99u, 100u, 5000u}) {
    StringAttrInfo info(opened.printer, "text");
    std::string text(length, 'x');
    const auto expectCopy = [&] {
      EXPECT_EQ(info.text(), std::string(length, 'x'));
      EXPECT_NE(info.text(), text.data());
      EXPECT_EQ(info.isOwned(), length > 99) << length;
    };
    info.setValue(text.data());
    expectCopy();
    info.setValue(text.data(), static_cast<unsigned>(length));
    expectCopy();
    info.setValue(Lumo::String(text));
    expectCopy();
    info.setValue(static_cast<const char*>(text.c_str()));
    EXPECT_EQ(info.text(), text.c_str());
    EXPECT_FALSE(info.isOwned());
  }
  std::string cut = "route-map" + std::string(200, '!');
  StringAttrInfo info(opened.printer, "text");
  for (const unsigned length : {5u, 150u}) {
    info.setValue(cut.data(), length);
    EXPECT_EQ(info.text(), cut.substr(0, length));
  }
}

TEST(StringAttrInfo, TakesItsOwnTextAgain) {
  OpenPrinter opened(textFormat);
  StringAttrInfo info(opened.printer, "text");
  info.setValue(Lumo::String(std::string(150, 'a') + "tail"));
  info.setValue(const_cast<char*>(info.text()) + 10);
  EXPECT_EQ(info.text(), std::string(140, 'a') + "tail");
  info.setValue(const_cast<char*>(info.text()) + 100);
  EXPECT_EQ(info.text(), std::string(40, 'a') + "tail");
  info.setValue(const_cast<char*>(info.text()) + 39);
  EXPECT_STREQ(info.text(), "atail");
}

TEST(AttrInfoDeath, AValueIsSetBeforeItIsUsed) {
  for (const unsigned format : {1u, 2u}) {
    OpenPrinter opened(format);
    EXPECT_DEATH(IntAttrInfo(opened.printer, "n").getArg(), "Assertion failed: hasValue");
    EXPECT_DEATH(Uint64AttrInfo(opened.printer, "n").getArg(), "Assertion failed: hasValue");
  }
}

TEST(AttrInfoDeath, OnlyTwoFormatsExist) {
  for (const unsigned format : {0u, 3u}) {
    OpenPrinter opened(format);
    BoolAttrInfo up(opened.printer, "up");
    EXPECT_DEATH(up.setValue(true), "Assertion failed: 0");
    IntAttrInfo number(opened.printer, "n");
    number.setValue(1);
    EXPECT_DEATH(number.getArg(), "Assertion failed: 0");
    Uint64AttrInfo wide(opened.printer, "n");
    wide.setValue(1);
    EXPECT_DEATH(wide.getArg(), "Assertion failed: 0");
  }
}

TEST(AttrInfoDeath, AnInfoStaysWithItsPrinter) {
  OpenPrinter model(modelFormat);
  OpenPrinter text(textFormat);
  IntAttrInfo shown(text.printer, "n");
  shown.setValue(1);
  EXPECT_DEATH(model.printer.addAttributes("%d", 1, shown.getArg()),
               "the printer it was made from");
  StringAttrInfo named(model.printer, "s");
  named.setValue("x");
  EXPECT_THROW(text.printer.addAttributes("%s", 1, named.getArg()), Lumo::InternalException);
}

} // namespace
