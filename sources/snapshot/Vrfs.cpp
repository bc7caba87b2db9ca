// The VRFs, each with its routes and with what is missing from hardware and kernel.
#include "ConfiguredNames.h"
#include "Names.h"
#include "Sections.h"
#include "StaticRoutes.h"
#include "state/DeviceBuilder.h"

#include <map>
#include <set>

namespace sources::snapshot {

namespace {

using state::DeviceState;
using state::VrfState;
using state::VrfTables;
using Vrf::VrfIdMap::VrfId;

/// The routes of one family that are missing from the hardware, by VRF: the state has one table for
/// the whole device.
template <class PrefixType>
using MissingRoutes = std::map<VrfId, std::vector<PrefixType>>;

struct Missing {
  MissingRoutes<Kesh::Prefix> routes;
  MissingRoutes<Kesh::Ip6Prefix> routes6;
};

struct VrfReader {
  Target& builder;
  VrfTables& tables;
  VrfState& state;
};

struct VrfWriter {
  const VrfState& state;
  const Missing& missing;
};

using VrfField = Field<VrfReader, VrfWriter>;

struct Ip4Vrf : state::Ip4Tables {
  static constexpr auto missing = &Missing::routes;
};
struct Ip6Vrf : state::Ip6Tables {
  static constexpr auto missing = &Missing::routes6;
};

template <class Family>
constexpr VrfField configField(std::string_view name) {
  return {name,
          [](Node& node, VrfReader& vrf) {
            const bool hasRoutes = readConfig<typename Family::Prefix>(
                node, vrf.state.*Family::routingConfig, vrf.builder.wantsConfigured);
            if (hasRoutes) checkConfiguredVrf(node, vrf.state.name);
          },
          [](const VrfWriter& vrf) { return configPresent(vrf.state.*Family::routingConfig); },
          [](Output& out, const VrfWriter& vrf) {
            writeConfig(out, vrf.state.*Family::routingConfig);
          }};
}

template <class Family>
constexpr VrfField inputsField(std::string_view name) {
  return {
      name,
      [](Node& node, VrfReader& vrf) {
        readInputs<typename Family::Prefix>(node, vrf.state.*Family::routeInput);
      },
      [](const VrfWriter& vrf) { return !(vrf.state.*Family::routeInput).empty(); },
      [](Output& out, const VrfWriter& vrf) { writeInputs(out, vrf.state.*Family::routeInput); }};
}

template <class Route>
constexpr Field<Route> routeFields[] = {
    field<Route, &Route::routeType>("type").asRequired(),
    field<Route, &Route::fecId>("fec"),
    field<Route, &Route::metric>("metric"),
    property<Route, &Route::preference, &Route::preferenceIs>("preference"),
    property<Route, &Route::srcVrfId, &Route::srcVrfIdIs>("srcVrfId"),
};

template <class Family>
constexpr VrfField routesField(std::string_view name) {
  using Route = typename Family::Route;
  return {
      name,
      [](Node& node, VrfReader& vrf) {
        readMap<typename Family::Prefix>(node, [&](const auto& prefix, Node& value) {
          Route route;
          route.key = prefix;
          readFields(value, routeFields<Route>, route);
          (vrf.tables.*Family::routes)->insert(route);
        });
      },
      [](const VrfWriter& vrf) { return (vrf.state.*Family::routingStatus)->route.members() > 0; },
      [](Output& out, const VrfWriter& vrf) {
        writeTable(out, (vrf.state.*Family::routingStatus)->route,
                   [&](const Route& route) { writeFields(out, routeFields<Route>, route); });
      }};
}

/// Reads an array whose elements each name a prefix; `read(node)` enters one and returns it.
template <class PrefixType, class Read>
void readPrefixes(Node& node, Read&& read) {
  Unique<PrefixType> unique;
  node.elements([&](Node& element) { unique.add(read(element)); });
  unique.check(node, quotedKey<PrefixType>);
}

template <class Family>
constexpr VrfField missingField(std::string_view name) {
  using PrefixType = typename Family::Prefix;
  return {
      name,
      [](Node& node, VrfReader& vrf) {
        readPrefixes<PrefixType>(node, [&](Node& element) {
          const auto prefix = Codec<PrefixType>::read(element);
          vrf.builder.hardwareUnprogrammed(prefix, vrf.state.id);
          return prefix;
        });
      },
      [](const VrfWriter& vrf) { return (vrf.missing.*Family::missing).count(vrf.state.id) > 0; },
      [](Output& out, const VrfWriter& vrf) {
        const auto scope = out.array(Output::Layout::lines);
        for (const auto& prefix : (vrf.missing.*Family::missing).at(vrf.state.id)) {
          Codec<PrefixType>::write(out, prefix);
        }
      }};
}

template <class Error>
constexpr Field<Error> kernelErrorFields[] = {
    field<Error, &Error::key>("prefix").asRequired(),
    field<Error, &Error::intfId>("interface"),
    field<Error, &Error::error>("error"),
};

/// A refused route is its prefix alone when nothing else is known of the refusal.
template <class Error>
Error readKernelError(Node& node) {
  Error error;
  if (node.isText()) {
    error.key = Codec<decltype(error.key)>::read(node);
  } else {
    readFields(node, kernelErrorFields<Error>, error);
  }
  return error;
}

template <class Error>
void writeKernelError(Output& out, const Error& error) {
  if (!error.intfId && error.error == 0) return Codec<decltype(error.key)>::write(out, error.key);
  writeFields(out, kernelErrorFields<Error>, error);
}

template <class Family>
constexpr VrfField kernelField(std::string_view name) {
  using Error = typename Family::KernelError;
  return {name,
          [](Node& node, VrfReader& vrf) {
            readPrefixes<typename Family::Prefix>(node, [&](Node& element) {
              const Error error = readKernelError<Error>(element);
              (vrf.tables.*Family::kernelErrorTable)->insert(error);
              return error.key;
            });
          },
          [](const VrfWriter& vrf) {
            return ((*vrf.state.kernelUnprogrammedRoute).*Family::kernelErrors).members() > 0;
          },
          [](Output& out, const VrfWriter& vrf) {
            const auto& view = (*vrf.state.kernelUnprogrammedRoute).*Family::kernelErrors;
            const auto scope = out.array(Output::Layout::lines);
            using View = std::decay_t<decltype(view)>;
            for (typename View::IteratorConst it(view); it; it.next()) {
              writeKernelError(out, it.value());
            }
          }};
}

// The number was read ahead of the other fields, since the VRF's tables are made for it.
void checkId(Node& node, VrfReader& vrf) {
  if (Codec<VrfId>::read(node) != vrf.state.id) node.refuse("0, the default VRF's number");
}

constexpr VrfField idField = {
    "id", checkId, [](const VrfWriter& vrf) { return vrf.state.id.value() != 0; },
    [](Output& out, const VrfWriter& vrf) { Codec<VrfId>::write(out, vrf.state.id); }};

constexpr VrfField vrfFields[] = {
    idField,
    configField<Ip4Vrf>("routingConfig"),
    configField<Ip6Vrf>("routing6Config"),
    inputsField<Ip4Vrf>("routeInput"),
    inputsField<Ip6Vrf>("route6Input"),
    routesField<Ip4Vrf>("routingStatus"),
    routesField<Ip6Vrf>("routing6Status"),
    missingField<Ip4Vrf>("unprogrammedRouteStatus"),
    missingField<Ip6Vrf>("unprogrammedRoute6Status"),
    kernelField<Ip4Vrf>("kernelUnprogrammedRoute"),
    kernelField<Ip6Vrf>("kernelUnprogrammedRoute6"),
};

VrfId readId(Node& node, const L3::VrfName& name) {
  if (name.stringValue() == L3::defaultVrfName) return VrfId(0);
  VrfId id;
  node.peek("id", [&](Node& value) {
    id = Codec<VrfId>::read(value);
    if (id.value() == 0) value.refuse("a number other than the default VRF's 0");
  });
  return id;
}

// A VRF that comes twice is found at once: its second number would contradict the first.
void readVrfs(Node& node, Target& builder) {
  std::set<L3::VrfName> names;
  Unique<VrfId> ids;
  node.members([&](std::string_view text, Node& value) {
    const auto name = parseText<L3::VrfName>(value, text);
    if (!names.insert(name).second) value.fail("the VRF a second time", "each VRF once");
    const VrfId id = readId(value, name);
    ids.add(id);
    VrfTables& tables = builder.vrf(name, id);
    VrfReader reader{builder, tables, builder.state.vrfs[builder.vrfPlace(name, id)]};
    readFields(value, vrfFields, reader);
  });
  ids.check(node, [](VrfId id) { return "the number " + std::to_string(id.value()); });
}

/// All rows of a device-wide table by VRF, in the table's order.
template <class Status>
auto byVrf(const Status& status) {
  using Key = typename Status::Key;
  MissingRoutes<decltype(Key::prefix)> routes;
  using View = std::decay_t<decltype(status.unprogrammedRoute)>;
  for (typename View::IteratorConst it(status.unprogrammedRoute); it; it.next()) {
    const Key& key = it.value().key;
    routes[key.vrfId].push_back(key.prefix);
  }
  return routes;
}

void writeVrfs(Output& out, const DeviceState& device) {
  const Missing missing{byVrf(*device.unprogrammedRouteStatus),
                        byVrf(*device.unprogrammedRoute6Status)};
  const auto scope = out.object(Output::Layout::lines);
  for (const VrfState& vrf : device.vrfs) {
    out.key(vrf.name.stringValue());
    writeFields(out, vrfFields, VrfWriter{vrf, missing}, Output::Layout::lines);
  }
}

} // namespace

Section vrfsSection() {
  return {"vrfs", readVrfs, [](const DeviceState&) { return true; }, writeVrfs};
}

} // namespace sources::snapshot
