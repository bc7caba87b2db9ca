// Walks over a collection as Python's iterators.
#pragma once

#include "Ref.h"
#include "lumo/Type.h"

namespace rova_python {

/// What a walk gives.
enum class Part { keys, values, items };

/// An iterator from the collection's start, in the library's order. It keeps the object alive and
/// survives changes of the collection. Throws what the library raises.
Ref startWalk(const Lumo::GenericPtr& object, const Lumo::AttributeRecord& attribute, Part part);

/// Makes the iterators' type. Throws `PythonError`.
void makeWalkType();

} // namespace rova_python
