// MPLS labels, label stacks and what is done with them.
#pragma once

#include "lumo/Exception.h"
#include "lumo/String.h"

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Kesh {

/// A label (20 bits) or one of the values beside the label space. Building one from a number above
/// `luWithdraw` raises "MplsLabel::value < MplsLabel::min or > MplsLabel::luWithdraw not allowed".
class MplsLabel {
 public:
  static constexpr std::uint32_t null = 0x100000; ///< no label
  static constexpr std::uint32_t any = 0x100001;  ///< every label
  static constexpr std::uint32_t luWithdraw =
      0x800000; ///< withdrawal of a labelled route, RFC 8277

  constexpr MplsLabel() = default;
  constexpr explicit MplsLabel(std::uint32_t value) : value_(value) {
    if (value > luWithdraw) {
      throw Lumo::RangeException(
          "MplsLabel::value < MplsLabel::min or > MplsLabel::luWithdraw not allowed");
    }
  }
  constexpr std::uint32_t value() const { return value_; }
  /// Whether it is the value that stands for no label.
  constexpr bool isNull() const { return value_ == null; }
  friend constexpr auto operator<=>(const MplsLabel&, const MplsLabel&) = default;

 private:
  std::uint32_t value_ = null;
};

/// What a router does with the label stack of a packet.
enum class LabelAction : std::uint8_t { unset = 0xff, push = 0, swap = 1, pop = 2 };

/// "push", "swap", "pop" or "unset"; the number for any other value.
Lumo::String stringValue(LabelAction action);

/// An index into a label stack, 0 to 6.
struct MplsStackEntryIndex {
  /// The indexes of the first and the last label of the longest stack:
  static constexpr std::uint8_t min = 0;
  static constexpr std::uint8_t max = 6;
  constexpr explicit MplsStackEntryIndex(std::uint32_t index)
      : value(static_cast<std::uint8_t>(index)) {
    if (index > max) {
      throw Lumo::RangeException("MplsStackEntryIndex::value < MplsStackEntryIndex::min or > "
                                 "MplsStackEntryIndex::max not allowed");
    }
  }
  std::uint8_t value;
};

/// A label action with a stack of up to seven labels, top label first. The default is the empty
/// operation: action unset, no labels.
class MplsLabelOperation {
 public:
  constexpr MplsLabelOperation() = default;

  LabelAction operation() const { return operation_; }
  void operationIs(LabelAction operation) { operation_ = operation; }
  std::uint8_t stackSize() const { return stackSize_; }
  /// The label at a place, 0 the top one; the null label behind the last.
  MplsLabel label(MplsStackEntryIndex index) const { return MplsLabel(labels_[index.value]); }
  /// Adds a label below those that are there; raises the index's range error behind the seventh.
  void labelAppend(MplsLabel label) {
    labels_[MplsStackEntryIndex(stackSize_).value] = label.value();
    ++stackSize_;
  }

  /// The action and the labels, top label first: "push 100 200".
  Lumo::String stringValue() const;
  /// From what `stringValue` gives; nothing for any other text.
  static std::optional<MplsLabelOperation> parse(std::string_view text);

  friend constexpr auto operator<=>(const MplsLabelOperation&, const MplsLabelOperation&) = default;

 private:
  LabelAction operation_ = LabelAction::unset;
  std::uint16_t flags_ = 0;
  std::uint8_t stackSize_ = 0;
  std::array<std::uint32_t, 7> labels_ = {MplsLabel::null, MplsLabel::null, MplsLabel::null,
                                          MplsLabel::null, MplsLabel::null, MplsLabel::null,
                                          MplsLabel::null};
};

/// A label (bits 23..0) and an action (bits 31..24) in one word, as via records hold them. The
/// label is checked when it is read, since the word comes from outside.
class MplsLabelAndAction {
 public:
  constexpr MplsLabelAndAction() = default;
  constexpr explicit MplsLabelAndAction(std::uint32_t word) : word_(word) {}
  /// The word as it stands in a record.
  constexpr std::uint32_t value() const { return word_; }
  constexpr MplsLabel label() const { return MplsLabel(word_ & 0xffffff); }
  constexpr void labelIs(MplsLabel label) { word_ = (word_ & 0xff000000u) | label.value(); }
  /// The code of the action, which this library only carries.
  constexpr std::uint8_t action() const { return static_cast<std::uint8_t>(word_ >> 24); }
  constexpr void actionIs(std::uint8_t action) {
    word_ = (word_ & 0xffffff) | std::uint32_t{action} << 24;
  }
  friend constexpr bool operator==(const MplsLabelAndAction&, const MplsLabelAndAction&) = default;

 private:
  std::uint32_t word_ = MplsLabel::null;
};

/// The name of a reserved label with its number, "exp-null-v4(0)", the texts of the values beside
/// the label space, and the number for all others.
Lumo::String labelText(MplsLabel label);

} // namespace Kesh
