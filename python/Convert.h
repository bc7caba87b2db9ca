// Values between the library and Python.
//
// | form of the type           | Python                                                    |
// |----------------------------|-----------------------------------------------------------|
// | boolean, integer, number   | bool, int                                                 |
// | real                       | float                                                     |
// | text                       | str; bytes that are no UTF-8 by surrogateescape           |
// | enumeration                | a member of an enum.IntEnum; int for a number without one |
// | notation                   | ipaddress objects (Address.h), else str                   |
// | record, entity, none       | an instance of the type's class (Types.h)                 |
#pragma once

#include "Ref.h"
#include "lumo/Type.h"

namespace rova_python {

/// The Python value; None for no value, for a null handle, and for an unset address.
Ref toPython(const Lumo::GenericPtr& value);

/// The value of that type. None makes a null handle, or an unset address. A record is an instance,
/// a dict of its attributes, or a tuple of its fields in their order. Raises TypeError with the
/// type and what was found, and range errors of the library.
Lumo::GenericPtr fromPython(PyObject* object, const Lumo::TypeRecord& type);

/// The same for what has a name of its own, an argument for one; it goes in front of the messages.
Lumo::GenericPtr namedFromPython(PyObject* object, const Lumo::TypeRecord& type, const char* name);

} // namespace rova_python
