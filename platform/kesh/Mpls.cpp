#include "kesh/Mpls.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string>

namespace Kesh {

namespace {

struct NamedLabel {
  std::uint32_t value;
  const char* text;
};
// RFC 3032, section 2.1, and the values beside the label space.
constexpr NamedLabel namedLabels[] = {
    {0, "exp-null-v4(0)"},
    {1, "router-alert(1)"},
    {2, "exp-null-v6(2)"},
    {3, "imp-null(3)"},
    {MplsLabel::null, "N/A"},
    {MplsLabel::any, "(any)"},
    {MplsLabel::luWithdraw, "(lu-withdraw)"},
};

} // namespace

Lumo::String stringValue(LabelAction action) {
  switch (action) {
  case LabelAction::push:
    return "push";
  case LabelAction::swap:
    return "swap";
  case LabelAction::pop:
    return "pop";
  case LabelAction::unset:
    return "unset";
  }
  return std::to_string(static_cast<unsigned>(action));
}

Lumo::String MplsLabelOperation::stringValue() const {
  std::string text = Kesh::stringValue(operation_).str();
  for (std::uint8_t i = 0; i < stackSize_; ++i) text += ' ' + std::to_string(labels_[i]);
  return text;
}

std::optional<MplsLabelOperation> MplsLabelOperation::parse(std::string_view text) {
  constexpr LabelAction actions[] = {LabelAction::push, LabelAction::swap, LabelAction::pop,
                                     LabelAction::unset};
  const auto action = text.substr(0, text.find(' '));
  const auto* const known = std::find_if(std::begin(actions), std::end(actions), [&](auto word) {
    return Kesh::stringValue(word) == action;
  });
  if (known == std::end(actions)) return {};
  MplsLabelOperation operation;
  operation.operationIs(*known);
  for (text.remove_prefix(action.size()); !text.empty();) {
    std::uint32_t label = 0;
    const auto* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data() + 1, end, label);
    if (text[0] != ' ' || error != std::errc()) return {};
    operation.labelAppend(MplsLabel(label));
    text = {rest, end};
  }
  return operation;
}

Lumo::String labelText(MplsLabel label) {
  for (const auto& named : namedLabels) {
    if (named.value == label.value()) return named.text;
  }
  return std::to_string(label.value());
}

} // namespace Kesh
