// Labels, stacks and their limits.
#include "kesh/Mpls.h"
#include "support/Expect.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using namespace Kesh;

std::string rangeError(auto&& act) { return support::messageOf<Lumo::RangeException>(act); }

constexpr const char* labelError =
    "MplsLabel::value < MplsLabel::min or > MplsLabel::luWithdraw not allowed";

TEST(MplsLabelTest, ReachesToTheWithdrawValue) {
  EXPECT_EQ(MplsLabel().value(), 0x100000u);
  EXPECT_TRUE(MplsLabel().isNull());
  EXPECT_FALSE(MplsLabel(0).isNull());
  EXPECT_EQ(MplsLabel(0x800000).value(), MplsLabel::luWithdraw);
  for (const std::uint32_t value : {0x800001u, 0xffffffu, 0xffffffffu}) {
    EXPECT_EQ(rangeError([=] { (void)MplsLabel(value); }), labelError) << value;
  }
}

TEST(MplsLabelAndActionTest, ChecksTheLabelWhenItIsRead) {
  auto word = MplsLabelAndAction(0xff800001);
  EXPECT_EQ(word.action(), 0xff);
  EXPECT_EQ(rangeError([&] { (void)word.label(); }), labelError);
  word.labelIs(MplsLabel(17));
  word.actionIs(2);
  EXPECT_EQ(word.label(), MplsLabel(17));
  EXPECT_EQ(word.action(), 2);
  EXPECT_EQ(word.value(), 0x02000011u);
  EXPECT_TRUE(MplsLabelAndAction().label().isNull());
}

TEST(MplsLabelOperationTest, HoldsSevenLabels) {
  MplsLabelOperation operation;
  EXPECT_EQ(operation.operation(), LabelAction::unset);
  for (std::uint32_t i = 0; i < 7; ++i) operation.labelAppend(MplsLabel(100 + i));
  EXPECT_EQ(operation.stackSize(), 7);
  EXPECT_EQ(operation.label(MplsStackEntryIndex(0)), MplsLabel(100));
  EXPECT_EQ(operation.label(MplsStackEntryIndex(6)), MplsLabel(106));
  const auto before = operation;
  EXPECT_EQ(
      rangeError([&] { operation.labelAppend(MplsLabel(1)); }),
      "MplsStackEntryIndex::value < MplsStackEntryIndex::min or > MplsStackEntryIndex::max not "
      "allowed");
  EXPECT_EQ(operation, before);
  EXPECT_THROW(MplsStackEntryIndex(256), Lumo::RangeException)
      << "the index is checked before it is cut";
}

TEST(MplsLabelOperationTest, ReadsWhatItWritesAndNothingElse) {
  for (const char* const text : {"push 100 200", "swap 3", "pop", "unset", "push 1 2 3 4 5 6 7"}) {
    const auto read = MplsLabelOperation::parse(text);
    ASSERT_TRUE(read) << text;
    EXPECT_EQ(read->stringValue().str(), text);
  }
  for (const char* const text : {"", " ", "pull 1", "Push 1", "push100", "push x", "push 1,2",
                                 "push 1  2", "push 1 ", "push -1", "push 4294967296", "pop\n"}) {
    EXPECT_FALSE(MplsLabelOperation::parse(text)) << text;
  }
  EXPECT_EQ(rangeError([] { MplsLabelOperation::parse("push 8388609"); }), labelError);
  EXPECT_THROW(MplsLabelOperation::parse("push 1 2 3 4 5 6 7 8"), Lumo::RangeException);
  MplsLabelOperation strange;
  strange.operationIs(static_cast<LabelAction>(7));
  EXPECT_EQ(strange.stringValue().str(), "7");
}

TEST(LabelTextTest, NamesTheReservedOnes) {
  const struct {
    std::uint32_t value;
    const char* text;
  } cases[] = {{0, "exp-null-v4(0)"},
               {1, "router-alert(1)"},
               {2, "exp-null-v6(2)"},
               {3, "imp-null(3)"},
               {4, "4"},
               {1048575, "1048575"},
               {0x100000, "N/A"},
               {0x100001, "(any)"},
               {0x100002, "1048578"},
               {0x800000, "(lu-withdraw)"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(labelText(MplsLabel(value)).str(), text);
}

} // namespace
