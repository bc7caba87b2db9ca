// Addresses and prefixes as objects of Python's `ipaddress`.
#pragma once

#include "Ref.h"
#include "lumo/Type.h"

namespace rova_python {

/// A type of the library that `ipaddress` has a class for.
struct AddressType {
  const char* name;
  /// "Address", "Network" or "Interface", behind the "IPv4" or "IPv6" of the value.
  const char* shape;
  /// The value that None stands for; null where every value is an address.
  Lumo::GenericPtr (*none)(const Lumo::TypeRecord& type);
};

/// Null for any other type.
const AddressType* addressType(const Lumo::TypeRecord& type);

/// The object for the text of a value; None for an unset address and the null prefix.
Ref addressToPython(const AddressType& address, const Lumo::String& text);
/// Reads an `ipaddress` object, a text, or None. Raises TypeError and the library's range errors.
Lumo::GenericPtr addressFromPython(const AddressType& address, PyObject* object,
                                   const Lumo::TypeRecord& type);

} // namespace rova_python
