#include "Capture.h"

#include <gtest/gtest.h>

namespace {

using namespace scrivo;

/// A printer whose output nobody reads.
struct Bench {
  explicit Bench(unsigned format) : printer(sink.fd(), format, true, false, true, 0) {}
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

TEST(AttrInfo, StartsWithoutAValue) {
  Bench bench(textFormat);
  const IntAttrInfo number(bench.printer, "number");
  EXPECT_FALSE(number.hasValue());
  EXPECT_FALSE(number.isKey());
  EXPECT_STREQ(number.key(), "number");
  EXPECT_EQ(number.format(), 1u);
  EXPECT_TRUE(IntAttrInfo(bench.printer, "", true).isKey());
}

TEST(AttrInfo, HasTheKindOfItsClass) {
  Bench bench(modelFormat);
  const auto kind = [](const AttrInfo& info) { return static_cast<unsigned>(info.kind()); };
  Printer& p = bench.printer;
  EXPECT_EQ(kind(IntAttrInfo(p, "")), 0u);
  EXPECT_EQ(kind(StringAttrInfo(p, "")), 1u);
  EXPECT_EQ(kind(BoolAttrInfo(p, "")), 2u);
  EXPECT_EQ(kind(Uint64AttrInfo(p, "")), 3u);
  EXPECT_EQ(kind(UintAttrInfo(p, "")), 4u);
  EXPECT_EQ(kind(DoubleAttrInfo(p, "")), 6u);
}

TEST(AttrInfo, GivesTheValueInTextAndItselfInTheModel) {
  Bench text(textFormat);
  Bench model(modelFormat);
  IntAttrInfo shown(text.printer, "n");
  IntAttrInfo named(model.printer, "n");
  shown.setValue(-5);
  named.setValue(-5);
  EXPECT_EQ(static_cast<std::int64_t>(shown.getArg().bits()), -5);
  EXPECT_EQ(&named.getArg().info(), &named);
  DoubleAttrInfo load(text.printer, "load");
  load.setValue(0.25f);
  EXPECT_EQ(load.getArg().real(), 0.25);
}

TEST(AttrInfo, BooleansShowWordsInTextAlone) {
  Bench text(textFormat);
  BoolAttrInfo shown(text.printer, "up");
  shown.setValue(true);
  EXPECT_STREQ(shown.text(), "True");
  shown.setValue(false);
  EXPECT_STREQ(shown.text(), "False");
  Bench model(modelFormat);
  BoolAttrInfo named(model.printer, "up");
  named.setValue(true);
  EXPECT_EQ(named.bits(), 1u);
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
  Bench bench(textFormat);
  for (const std::size_t length : {0u, 1u, 98u, 99u, 100u, 5000u}) {
    StringAttrInfo info(bench.printer, "text");
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
}

TEST(StringAttrInfo, CutsAtTheLengthGiven) {
  Bench bench(textFormat);
  StringAttrInfo info(bench.printer, "text");
  std::string text = "route-map" + std::string(200, '!');
  info.setValue(text.data(), 5);
  EXPECT_STREQ(info.text(), "route");
  info.setValue(text.data(), 150);
  EXPECT_EQ(info.text(), text.substr(0, 150));
}

TEST(StringAttrInfo, TakesItsOwnTextAgain) {
  Bench bench(textFormat);
  StringAttrInfo info(bench.printer, "text");
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
    Bench bench(format);
    EXPECT_DEATH(IntAttrInfo(bench.printer, "n").getArg(), "Assertion failed: hasValue");
    EXPECT_DEATH(Uint64AttrInfo(bench.printer, "n").getArg(), "Assertion failed: hasValue");
  }
}

TEST(AttrInfoDeath, OnlyTwoFormatsExist) {
  for (const unsigned format : {0u, 3u}) {
    Bench bench(format);
    BoolAttrInfo up(bench.printer, "up");
    EXPECT_DEATH(up.setValue(true), "Assertion failed: 0");
    IntAttrInfo number(bench.printer, "n");
    number.setValue(1);
    EXPECT_DEATH(number.getArg(), "Assertion failed: 0");
    Uint64AttrInfo wide(bench.printer, "n");
    wide.setValue(1);
    EXPECT_DEATH(wide.getArg(), "Assertion failed: 0");
  }
}

TEST(AttrInfoDeath, AnInfoStaysWithItsPrinter) {
  Bench model(modelFormat);
  Bench text(textFormat);
  IntAttrInfo shown(text.printer, "n");
  shown.setValue(1);
  EXPECT_DEATH(model.printer.addAttributes("%d", 1, shown.getArg()),
               "the printer it was made from");
  StringAttrInfo named(model.printer, "s");
  named.setValue("x");
  EXPECT_THROW(text.printer.addAttributes("%s", 1, named.getArg()), Lumo::InternalException);
}

} // namespace
