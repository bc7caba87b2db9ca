#include "kesh/Mpls.h"

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

Lumo::String labelText(MplsLabel label) {
  for (const auto& named : namedLabels) {
    if (named.value == label.value()) return named.text;
  }
  return std::to_string(label.value());
}

} // namespace Kesh
