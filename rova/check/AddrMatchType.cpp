#include "rova/check/AddressAssignmentChecker.h"

namespace Rova {

namespace {

constexpr Lumo::EnumType enumType = Lumo::enumTypeOf<AddrMatchType>();

} // namespace

AddrMatchType AddrMatchTypeInstance(std::uint32_t number) {
  return static_cast<AddrMatchType>(enumType.instance(number));
}

AddrMatchType AddrMatchTypeInstance(const Lumo::String& name) {
  return static_cast<AddrMatchType>(enumType.instance(name.view()));
}

Lumo::String stringValue(AddrMatchType type) { return Lumo::plainText(type); }

std::ostream& operator<<(std::ostream& out, AddrMatchType type) {
  return out << Lumo::valueToStrep(type);
}

} // namespace Rova
