// Whether an address may be assigned to an interface.
//
// The two families have rules of their own, not one rule for two types of address.
#pragma once

#include "lumo/Attribute.h"
#include "rova/core/Export.h"
#include "rova/core/TypeNames.h"

#include <cstdint>

namespace Rova {

/// How far an address may match one that the same interface has already.
enum class AddrMatchType : std::uint32_t {
  allowNoMatch = 0,     ///< an equal address is a conflict
  allowExactMatch = 1,  ///< it is one unless the mask is equal too
  allowAddressMatch = 2 ///< it is none
};

/// The names of the matches.
inline constexpr Lumo::EnumName<AddrMatchType> addrMatchTypeNames[] = {
    {AddrMatchType::allowNoMatch, "allowNoMatch"},
    {AddrMatchType::allowExactMatch, "allowExactMatch"},
    {AddrMatchType::allowAddressMatch, "allowAddressMatch"},
};

// Both raise a range error for what is no value.
ROVA_EXPORT AddrMatchType AddrMatchTypeInstance(std::uint32_t number);
ROVA_EXPORT AddrMatchType AddrMatchTypeInstance(const Lumo::String& name);
ROVA_EXPORT Lumo::String stringValue(AddrMatchType type);
ROVA_EXPORT std::ostream& operator<<(std::ostream& out, AddrMatchType type);

} // namespace Rova

LUMO_TYPE_NAME(Rova::AddrMatchType);
LUMO_ENUM(Rova::AddrMatchType, Rova::addrMatchTypeNames);

namespace Rova {

/// The verdict on a query, with the reason for a refusal.
class ROVA_EXPORT AddressQueryResult {
  LUMO_TYPE(AddressQueryResult, "Rova::AddressQueryResult")
  LUMO_ATTR(bool, acceptable)
  LUMO_ATTR(Lumo::String, msg)
  LUMO_END
  LUMO_VALUE(AddressQueryResult)

  AddressQueryResult() = default;
};

/// A query for IPv4: the address, the interface that is to get it, and what may match.
class ROVA_EXPORT AddressQueryParams : public Lumo::PtrInterface {
  LUMO_TYPE(AddressQueryParams, "Rova::AddressQueryParams")
  LUMO_CTOR_WRITABLE(Lumo::Ptr<const Ip::Config>, ipConfig, Lumo::orNull) // null: no interfaces
  LUMO_CTOR_WRITABLE(Lumo::String, intfName)   // the interface to get the address
  LUMO_CTOR_WRITABLE(Lumo::String, mgmtPrefix) // what the names of management interfaces begin with
  LUMO_CTOR_WRITABLE(AddrMatchType, primaryMatch)   // against primary addresses
  LUMO_CTOR_WRITABLE(AddrMatchType, secondaryMatch) // against secondary addresses
  LUMO_CTOR_WRITABLE(Kesh::IpAddrWithMask, addrWithMask)
  LUMO_END

  AddressQueryParams(Lumo::Ptr<const Ip::Config> config, Lumo::String interface,
                     Lumo::String management, AddrMatchType primary, AddrMatchType secondary,
                     const Kesh::IpAddrWithMask& address)
      : ipConfig_(std::move(config)),
        intfName_(std::move(interface)),
        mgmtPrefix_(std::move(management)),
        primaryMatch_(primary),
        secondaryMatch_(secondary),
        addrWithMask_(address) {}
  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }
};

/// A query for IPv6.
class ROVA_EXPORT Address6QueryParams : public Lumo::PtrInterface {
  LUMO_TYPE(Address6QueryParams, "Rova::Address6QueryParams")
  LUMO_CTOR_WRITABLE(Lumo::Ptr<const Ip6::Config>, ipConfig) // not null
  LUMO_CTOR_WRITABLE(Lumo::String, intfName)
  LUMO_CTOR_WRITABLE(Lumo::String, mgmtPrefix)
  LUMO_CTOR_WRITABLE(Kesh::Ip6AddrWithMask, addrWithMask)
  LUMO_END

  Address6QueryParams(Lumo::Ptr<const Ip6::Config> config, Lumo::String interface,
                      Lumo::String management, const Kesh::Ip6AddrWithMask& address)
      : ipConfig_(std::move(config)),
        intfName_(std::move(interface)),
        mgmtPrefix_(std::move(management)),
        addrWithMask_(address) {}
  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }
};

/// The arguments are the constructor attributes in their order.
ROVA_EXPORT Lumo::Ptr<AddressQueryParams>
addressQueryParamsFactory(const Lumo::Ptr<const Ip::Config>& ipConfig, Lumo::String intfName,
                          Lumo::String mgmtPrefix, AddrMatchType primaryMatch,
                          AddrMatchType secondaryMatch, const Kesh::IpAddrWithMask& addrWithMask);
/// The same for IPv6.
ROVA_EXPORT Lumo::Ptr<Address6QueryParams>
address6QueryParamsFactory(const Lumo::Ptr<const Ip6::Config>& ipConfig, Lumo::String intfName,
                           Lumo::String mgmtPrefix, const Kesh::Ip6AddrWithMask& addrWithMask);

/// Refuses an IPv4 address that another interface of the VRF has, or whose subnet overlaps one of
/// another interface; management interfaces may overlap each other.
class ROVA_EXPORT AddressAssignmentChecker {
  LUMO_TYPE(AddressAssignmentChecker, "Rova::AddressAssignmentChecker")
  LUMO_METHOD(check, "params")
  LUMO_END
  LUMO_VALUE(AddressAssignmentChecker)

  AddressAssignmentChecker() = default;
  AddressQueryResult check(Lumo::Ptr<const AddressQueryParams> params) const;
};

/// The same for IPv6. A link-local address is refused: it is configured with a keyword of its own.
class ROVA_EXPORT Address6AssignmentChecker {
  LUMO_TYPE(Address6AssignmentChecker, "Rova::Address6AssignmentChecker")
  LUMO_METHOD(check, "params")
  LUMO_END
  LUMO_VALUE(Address6AssignmentChecker)

  Address6AssignmentChecker() = default;
  AddressQueryResult check(Lumo::Ptr<const Address6QueryParams> params) const;
};

} // namespace Rova
