#include "Address.h"

#include "Errors.h"
#include "Text.h"
#include "kesh/Prefix.h"
#include "state/TypeNames.h"

#include <arpa/inet.h>
#include <charconv>
#include <string>

namespace rova_python {

namespace {

Lumo::GenericPtr unset(const Lumo::TypeRecord& type) { return type.fromText(""); }
template <class Prefix>
Lumo::GenericPtr nullPrefix(const Lumo::TypeRecord&) {
  return Lumo::wrapAttrValue(Prefix::nullPrefix());
}

// The only place that knows types of the library by name: what is the same in `ipaddress`.
constexpr AddressType types[] = {
    {"Kesh::IpAddr", "Address", nullptr},
    {"Kesh::Ip6Addr", "Address", nullptr},
    {"Kesh::IpGenAddr", "Address", unset},
    {"Kesh::Prefix", "Network", nullPrefix<Kesh::Prefix>},
    {"Kesh::Ip6Prefix", "Network", nullPrefix<Kesh::Ip6Prefix>},
    {"Kesh::IpGenPrefix", "Network", unset},
    {"Kesh::IpAddrWithMask", "Interface", nullptr},
    {"Kesh::Ip6AddrWithMask", "Interface", nullptr},
};

/// A class of `ipaddress`, by "IPv4Network" and the like. Borrowed: the module outlives all.
PyObject* ipaddressClass(const std::string& name) {
  static PyObject* const module = PyImport_ImportModule("ipaddress");
  if (!module) throw PythonError();
  PyObject* const dict = PyModule_GetDict(module);
  PyObject* const found = PyDict_GetItemString(dict, name.c_str());
  if (!found) raise(PyExc_ImportError, "ipaddress has no " + name);
  return found;
}

bool isAddressObject(PyObject* object) {
  static PyObject* const classes = [] {
    const auto named = [](const char* name) { return ipaddressClass(name); };
    return owned(PyTuple_Pack(4, named("IPv4Address"), named("IPv6Address"), named("IPv4Network"),
                              named("IPv6Network")))
        .release(); // the interfaces are derived from the addresses
  }();
  const int is = PyObject_IsInstance(object, classes);
  check(is);
  return is == 1;
}

/// The address in network byte order, which `ipaddress` takes faster than its text.
Ref packed(const std::string& address, bool isIp6) {
  unsigned char bytes[16];
  if (inet_pton(isIp6 ? AF_INET6 : AF_INET, address.c_str(), bytes) != 1) {
    raise(PyExc_ValueError, "'" + address + "' is no address");
  }
  return owned(PyBytes_FromStringAndSize(reinterpret_cast<const char*>(bytes), isIp6 ? 16 : 4));
}

} // namespace

const AddressType* addressType(const Lumo::TypeRecord& type) {
  for (const AddressType& row : types) {
    if (std::strcmp(row.name, type.name) == 0) return &row;
  }
  return nullptr;
}

Ref addressToPython(const AddressType& address, const Lumo::String& text) {
  if (text.empty()) return Ref::none();
  const std::string_view whole = text.view();
  const auto slash = whole.find('/');
  const bool isIp6 = whole.find(':') != whole.npos;
  Ref bytes = packed(std::string(whole.substr(0, slash)), isIp6);
  PyObject* const made = ipaddressClass(std::string(isIp6 ? "IPv6" : "IPv4") + address.shape);
  if (slash == whole.npos) return owned(PyObject_CallOneArg(made, bytes.get()));

  int length = 0;
  std::from_chars(whole.data() + slash + 1, whole.data() + whole.size(), length);
  if (length < 0) return Ref::none();
  const Ref pair = owned(Py_BuildValue("(Oi)", bytes.get(), length));
  return owned(PyObject_CallOneArg(made, pair.get()));
}

Lumo::GenericPtr addressFromPython(const AddressType& address, PyObject* object,
                                   const Lumo::TypeRecord& type) {
  if (object == Py_None && address.none) return address.none(type);
  if (!PyUnicode_Check(object) && !isAddressObject(object)) throwWrongType(type, object);
  const std::string text = bytesOf(owned(PyObject_Str(object)).get());
  auto value = type.fromText(text);
  // Types that can be unset read any text that is no address as that.
  if (address.none && !text.empty() && type.toText(value->voidPtrIs(type)).empty()) {
    throw Lumo::RangeException("'" + text + "' is no " + type.name);
  }
  return value;
}

} // namespace rova_python
