// Attributes of the library's types as properties.
#pragma once

#include "Ref.h"
#include "lumo/Type.h"

#include <string>

namespace rova_python {

/// The property of an attribute that is no method. The row must stay, `doc` too.
PyGetSetDef propertyOf(const Lumo::AttributeRecord& row, const char* doc);

/// One line on the attribute: its type, and how it is written.
std::string docOf(const Lumo::AttributeRecord& row);

} // namespace rova_python
