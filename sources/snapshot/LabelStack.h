// Label actions with their stacks. A snapshot lists the labels of every stack from the top; where
// the top is in the record depends on whose stack it is.
#pragma once

#include "Field.h"
#include "Names.h"

#include "kesh/Mpls.h"

namespace sources::snapshot {

enum class TopLabel { first, last };

/// At most 7 labels; raises `SourceError` for one more.
void readLabels(Node& node, Kesh::MplsLabelOperation& operation, TopLabel top);
void writeLabels(Output& out, const Kesh::MplsLabelOperation& operation, TopLabel top);

template <TopLabel top>
constexpr Field<Kesh::MplsLabelOperation> labelStackFields[] = {
    property<Kesh::MplsLabelOperation, &Kesh::MplsLabelOperation::operation,
             &Kesh::MplsLabelOperation::operationIs>("operation"),
    {"labels",
     [](Node& node, Kesh::MplsLabelOperation& operation) { readLabels(node, operation, top); },
     [](const Kesh::MplsLabelOperation& operation) { return operation.stackSize() > 0; },
     [](Output& out, const Kesh::MplsLabelOperation& operation) {
       writeLabels(out, operation, top);
     }},
};

} // namespace sources::snapshot
