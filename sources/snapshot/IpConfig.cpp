// Configured addresses of interfaces, and route distinguishers in use.
#include "ConfiguredNames.h"
#include "Sections.h"

#include "state/IpConfig.h"
#include "state/RouteDistinguisherInput.h"

namespace sources::snapshot {

namespace {

// A layer 3 configuration of the empty VRF name means the same as none and is not written.
template <class Config>
constexpr Field<Config> vrfField() {
  return {"vrf",
          [](Node& node, Config& config) {
            config.l3Config = Lumo::newEntity<L3::IntfConfig>(Codec<L3::VrfName>::read(node));
          },
          [](const Config& config) {
            return config.l3Config && !config.l3Config->vrf.stringValue().empty();
          },
          [](Output& out, const Config& config) {
            Codec<L3::VrfName>::write(out, config.l3Config->vrf);
          }};
}

/// An ordered collection of addresses, as an array of its keys.
template <class Config, auto Member>
constexpr Field<Config> addressesField(std::string_view name) {
  using Addresses = std::decay_t<decltype(std::declval<Config&>().*Member)>;
  using Address = typename Addresses::KeyType;
  return {name,
          [](Node& node, Config& config) {
            Unique<Address> unique;
            node.elements([&](Node& element) {
              const auto address = Codec<Address>::read(element);
              unique.add(address);
              (config.*Member).insertOrAssign(address, {});
            });
            unique.check(node, quotedKey<Address>);
          },
          [](const Config& config) { return !(config.*Member).empty(); },
          [](Output& out, const Config& config) {
            const auto scope = out.array(Output::Layout::row);
            for (const auto& [address, info] : config.*Member) Codec<Address>::write(out, address);
          }};
}

using IpConfig = Ip::IpIntfConfig;
using Ip6Config = Ip6::IntfConfig;

constexpr Field<IpConfig> ipConfigFields[] = {
    vrfField<IpConfig>(),
    field<IpConfig, &IpConfig::addrWithMask>("addrWithMask"),
    addressesField<IpConfig, &IpConfig::secondaryWithMask>("secondaryWithMask"),
    field<IpConfig, &IpConfig::virtualAddrWithMask>("virtualAddrWithMask"),
    addressesField<IpConfig, &IpConfig::virtualSecondaryWithMask>("virtualSecondaryWithMask"),
};

constexpr Field<Ip6Config> ip6ConfigFields[] = {
    vrfField<Ip6Config>(),
    addressesField<Ip6Config, &Ip6Config::addr>("addr"),
};

using Ip::RouteDistinguisherInput;
using Distinguishers = decltype(RouteDistinguisherInput::routeDistinguisher);

void readDistinguishers(Node& node, Target& builder) {
  readMap<Lumo::String>(node, [&](const Lumo::String& agent, Node& value) {
    requireShown(value, "the agent", agent.str());
    const auto input = Lumo::newEntity<RouteDistinguisherInput>();
    input->routeDistinguisher = Codec<Distinguishers>::read(value);
    builder.state.routeDistinguisherInputDir->entityIs(agent, input);
  });
}

void writeDistinguishers(Output& out, const state::DeviceState& device) {
  const auto scope = out.object(Output::Layout::lines);
  for (const auto& [agent, entity] : sorted(device.routeDistinguisherInputDir->entities())) {
    const auto input = Lumo::dynamicPtrCast<RouteDistinguisherInput>(*entity);
    if (!input) continue; // of a type that the directory is not for
    out.key(agent);
    Codec<Distinguishers>::write(out, input->routeDistinguisher);
  }
}

} // namespace

Section ipConfigSection() {
  return recordSection<&state::DeviceState::ipConfig, &Ip::Config::ipIntfConfig, ipConfigFields>(
      "ipConfig");
}

Section ip6ConfigSection() {
  return recordSection<&state::DeviceState::ip6Config, &Ip6::Config::intf, ip6ConfigFields>(
      "ip6Config");
}

Section routeDistinguisherSection() {
  return {"routeDistinguisherInputDir", readDistinguishers,
          [](const state::DeviceState& device) {
            return !device.routeDistinguisherInputDir->entities().empty();
          },
          writeDistinguishers};
}

} // namespace sources::snapshot
