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

constexpr const char* addressShape = "Address";
constexpr const char* networkShape = "Network";
constexpr const char* interfaceShape = "Interface";

// The only place that knows types of the library by name: what is the same in `ipaddress`.
constexpr AddressType types[] = {
    {"Kesh::IpAddr", addressShape, nullptr},
    {"Kesh::Ip6Addr", addressShape, nullptr},
    {"Kesh::IpGenAddr", addressShape, unset},
    {"Kesh::Prefix", networkShape, nullPrefix<Kesh::Prefix>},
    {"Kesh::Ip6Prefix", networkShape, nullPrefix<Kesh::Ip6Prefix>},
    {"Kesh::IpGenPrefix", networkShape, unset},
    {"Kesh::IpAddrWithMask", interfaceShape, nullptr},
    {"Kesh::Ip6AddrWithMask", interfaceShape, nullptr},
};

/// A class of `ipaddress`, by "IPv4Network" and the like.
PyObject* ipaddressClass(const std::string& name) {
  const Ref module = owned(PyImport_ImportModule("ipaddress"));
  return owned(PyObject_GetAttrString(module.get(), name.c_str())).release();
}

/// The classes of a shape. Kept: looking them up would cost as much as what they do.
struct Classes {
  explicit Classes(const std::string& shape)
      : ip4(ipaddressClass("IPv4" + shape)), ip6(ipaddressClass("IPv6" + shape)) {}
  PyObject* ip4;
  PyObject* ip6;
};

const Classes& classesOf(std::string_view shape) {
  static const Classes addresses(addressShape), networks(networkShape), interfaces(interfaceShape);
  return shape == addressShape ? addresses : shape == networkShape ? networks : interfaces;
}

bool isAddressObject(PyObject* object) {
  // Interfaces are derived from addresses.
  for (const char* const shape : {addressShape, networkShape}) {
    for (PyObject* const made : {classesOf(shape).ip4, classesOf(shape).ip6}) {
      if (PyObject_TypeCheck(object, reinterpret_cast<PyTypeObject*>(made))) return true;
    }
  }
  return false;
}

/// The address as `ipaddress` takes it fastest: a number for IPv4, bytes for IPv6.
Ref addressNumber(const std::string& text, bool isIp6) {
  unsigned char bytes[16];
  if (inet_pton(isIp6 ? AF_INET6 : AF_INET, text.c_str(), bytes) != 1) {
    raise(PyExc_ValueError, "'" + text + "' is no address");
  }
  if (isIp6) return owned(PyBytes_FromStringAndSize(reinterpret_cast<const char*>(bytes), 16));
  const std::uint32_t number =
      std::uint32_t{bytes[0]} << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
  return owned(PyLong_FromUnsignedLong(number));
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
  const Ref number = addressNumber(std::string(whole.substr(0, slash)), isIp6);
  const Classes& classes = classesOf(address.shape);
  PyObject* const made = isIp6 ? classes.ip6 : classes.ip4;
  if (slash == whole.npos) return owned(PyObject_CallOneArg(made, number.get()));

  int length = 0;
  std::from_chars(whole.data() + slash + 1, whole.data() + whole.size(), length);
  if (length < 0) return Ref::none();
  const Ref pair = owned(Py_BuildValue("(Oi)", number.get(), length));
  return owned(PyObject_CallOneArg(made, pair.get()));
}

Lumo::GenericPtr addressFromPython(const AddressType& address, PyObject* object,
                                   const Lumo::TypeRecord& type) {
  if (object == Py_None && address.none) return address.none(type);
  if (!PyUnicode_Check(object) && !isAddressObject(object)) throwWrongType(type, object);
  return type.fromText(bytesOf(owned(PyObject_Str(object)).get()));
}

} // namespace rova_python
