#include "LabelStack.h"

#include <algorithm>
#include <vector>

namespace sources::snapshot {

namespace {

constexpr std::size_t maxLabels = Kesh::MplsStackEntryIndex::max + 1;

} // namespace

void readLabels(Node& node, Kesh::MplsLabelOperation& operation, TopLabel top) {
  std::vector<Kesh::MplsLabel> labels;
  node.elements([&](Node& element) {
    if (labels.size() == maxLabels) element.fail("one label more", "at most 7 labels");
    labels.push_back(Codec<Kesh::MplsLabel>::read(element));
  });
  if (top == TopLabel::last) std::reverse(labels.begin(), labels.end());
  for (const Kesh::MplsLabel label : labels) operation.labelAppend(label);
}

void writeLabels(Output& out, const Kesh::MplsLabelOperation& operation, TopLabel top) {
  const auto scope = out.array(Output::Layout::row);
  const unsigned size = operation.stackSize();
  for (unsigned i = 0; i < size; ++i) {
    const Kesh::MplsStackEntryIndex index(top == TopLabel::first ? i : size - 1 - i);
    Codec<Kesh::MplsLabel>::write(out, operation.label(index));
  }
}

} // namespace sources::snapshot
