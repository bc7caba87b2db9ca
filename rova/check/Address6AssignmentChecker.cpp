#include "ConfiguredInterface.h"
#include "rova/check/AddressAssignmentChecker.h"

namespace Rova {

using Kesh::Ip6AddrWithMask;

LUMO_DEFINE_TYPE(Address6QueryParams);
LUMO_DEFINE_TYPE(Address6AssignmentChecker);

namespace {

constexpr const char* linkLocalMessage =
    "'link-local' keyword must be used to configure a link local address.";

/// One query against the interfaces of its VRF.
class Address6Query {
 public:
  explicit Address6Query(const Address6QueryParams& params)
      : params_(params),
        wanted_(params.addrWithMask()),
        interface_(params.intfName()),
        isManagement_(beginsWith(params.intfName(), params.mgmtPrefix())) {}

  /// The reason why the interface refuses the address; nothing when it does not.
  std::optional<Lumo::String> refusal(const Ip6::IntfConfig& interface) const {
    const bool isSame = interface.intfId == interface_;
    for (const auto& [existing, info] : interface.addr) {
      auto reason = isSame ? refusalByItself(existing) : refusalByOther(existing, interface.intfId);
      if (reason) return reason;
    }
    return {};
  }

 private:
  std::optional<Lumo::String> refusalByItself(const Ip6AddrWithMask& existing) const {
    if (existing.address() != wanted_.address() || existing.len() == wanted_.len()) return {};
    return Lumo::String("Address " + existing.stringValue().str() +
                        " is already assigned to this interface");
  }

  std::optional<Lumo::String> refusalByOther(const Ip6AddrWithMask& existing,
                                             const Kesh::IntfId& other) const {
    if (existing.address().isLinkLocal()) return {};
    if (existing.address() == wanted_.address()) {
      return assignedMessage(existing.address().stringValue(), other.stringValue());
    }
    if (!existing.overlaps(wanted_)) return {};
    if (isManagement_ && beginsWith(other.stringValue(), params_.mgmtPrefix())) return {};
    return overlapMessage("Subnet", wanted_.subnet().stringValue(), existing.subnet().stringValue(),
                          other.stringValue());
  }

  const Address6QueryParams& params_;
  const Ip6AddrWithMask& wanted_;
  const Kesh::IntfId interface_;
  const bool isManagement_;
};

} // namespace

AddressQueryResult
Address6AssignmentChecker::check(Lumo::Ptr<const Address6QueryParams> params) const {
  AddressQueryResult result;
  if (params->addrWithMask().address().isLinkLocal()) {
    result.msgIs(linkLocalMessage);
    return result;
  }
  const auto& interfaces = params->ipConfig()->intf;
  const Address6Query query(*params);
  const auto reason = firstOfVrf(interfaces, queriedVrf(interfaces, params->intfName()),
                                 [&](const auto& interface) { return query.refusal(interface); });
  result.acceptableIs(!reason);
  result.msgIs(reason.value_or(Lumo::String()));
  return result;
}

Lumo::Ptr<Address6QueryParams>
address6QueryParamsFactory(const Lumo::Ptr<const Ip6::Config>& ipConfig, Lumo::String intfName,
                           Lumo::String mgmtPrefix, const Ip6AddrWithMask& addrWithMask) {
  return Lumo::newEntity<Address6QueryParams>(ipConfig, std::move(intfName), std::move(mgmtPrefix),
                                              addrWithMask);
}

} // namespace Rova
