#include "rova/check/AddressAssignmentChecker.h"

#include "ConfiguredInterface.h"

namespace Rova {

using Kesh::IpAddrWithMask;

LUMO_DEFINE_TYPE(AddressQueryResult);
LUMO_DEFINE_TYPE(AddressQueryParams);
LUMO_DEFINE_TYPE(AddressAssignmentChecker);

namespace {

constexpr int addressBits = 32;

bool isNone(const IpAddrWithMask& address) { return address == IpAddrWithMask(); }

/// The first `length` bits of an address as a number; the whole address for length 0, which shifts
/// by 32 bits and so by none.
std::uint32_t masked(std::uint32_t address, int length) {
  const unsigned shift = static_cast<unsigned>(addressBits - length) % addressBits;
  return address >> shift << shift;
}

bool overlap(const IpAddrWithMask& a, const IpAddrWithMask& b) {
  const std::uint32_t different = a.address().host() ^ b.address().host();
  return a.len() == 0 || b.len() == 0 || masked(different, a.len()) == 0 ||
         masked(different, b.len()) == 0;
}

Lumo::String networkText(const IpAddrWithMask& address) {
  return Kesh::IpAddr::fromHost(masked(address.address().host(), address.len())).stringValue();
}

/// One query against the interfaces of its VRF.
class AddressQuery {
 public:
  explicit AddressQuery(const AddressQueryParams& params)
      : params_(params),
        wanted_(params.addrWithMask()),
        interface_(params.intfName()),
        isManagement_(beginsWith(params.intfName(), params.mgmtPrefix())) {}

  /// The reason why the interface refuses the address; nothing when it does not.
  std::optional<Lumo::String> refusal(const Ip::IpIntfConfig& interface) const {
    const bool isSame = interface.intfId == interface_;
    const Place place{interface.intfId, isSame,
                      isSame || (isManagement_ &&
                                 beginsWith(interface.intfId.stringValue(), params_.mgmtPrefix()))};
    const auto& primary =
        isNone(interface.addrWithMask) ? interface.virtualAddrWithMask : interface.addrWithMask;
    if (auto reason = refusal(primary, params_.primaryMatch(), place, !isNone(primary))) {
      return reason;
    }
    for (const auto* const secondaries :
         {&interface.secondaryWithMask, &interface.virtualSecondaryWithMask}) {
      for (const auto& [address, present] : *secondaries) {
        if (auto reason = refusal(address, params_.secondaryMatch(), place, true)) return reason;
      }
    }
    return {};
  }

 private:
  /// The interface that has an address.
  struct Place {
    const Kesh::IntfId& interface;
    bool isSame; ///< it is the one that wants the address
    bool mayOverlap;
  };

  std::optional<Lumo::String> refusal(const IpAddrWithMask& existing, AddrMatchType rule,
                                      const Place& place, bool hasSubnet) const {
    if (conflicts(existing, rule, place)) {
      return assignedMessage(wanted_.address().stringValue(), place.interface.stringValue());
    }
    if (!hasSubnet || place.mayOverlap || !overlap(wanted_, existing)) return {};
    return overlapMessage(wanted_.len() == addressBits ? "Address" : "Subnet", networkText(wanted_),
                          networkText(existing), place.interface.stringValue());
  }

  bool conflicts(const IpAddrWithMask& existing, AddrMatchType rule, const Place& place) const {
    if (existing.address() != wanted_.address()) return false;
    if (!place.isSame || rule == AddrMatchType::allowNoMatch) return true;
    return rule == AddrMatchType::allowExactMatch && existing.len() != wanted_.len();
  }

  const AddressQueryParams& params_;
  const IpAddrWithMask& wanted_;
  const Kesh::IntfId interface_;
  const bool isManagement_;
};

} // namespace

AddressQueryResult
AddressAssignmentChecker::check(Lumo::Ptr<const AddressQueryParams> params) const {
  AddressQueryResult result;
  if (!params->ipConfig()) {
    result.msgIs("No interfaces");
    return result;
  }
  const auto& interfaces = params->ipConfig()->ipIntfConfig;
  std::optional<Lumo::String> reason;
  if (params->addrWithMask().address() != Kesh::IpAddr()) {
    const AddressQuery query(*params);
    reason = firstOfVrf(interfaces, queriedVrf(interfaces, params->intfName()),
                        [&](const auto& interface) { return query.refusal(interface); });
  }
  result.acceptableIs(!reason);
  result.msgIs(reason.value_or(Lumo::String()));
  return result;
}

Lumo::Ptr<AddressQueryParams>
addressQueryParamsFactory(const Lumo::Ptr<const Ip::Config>& ipConfig, Lumo::String intfName,
                          Lumo::String mgmtPrefix, AddrMatchType primaryMatch,
                          AddrMatchType secondaryMatch, const IpAddrWithMask& addrWithMask) {
  return Lumo::newEntity<AddressQueryParams>(ipConfig, std::move(intfName), std::move(mgmtPrefix),
                                             primaryMatch, secondaryMatch, addrWithMask);
}

} // namespace Rova
