// Nexthop groups: as configured, their identifiers, and as the hardware has them.
#include "ConfiguredNames.h"
#include "LabelStack.h"
#include "Names.h"
#include "Sections.h"

#include "state/NexthopGroup.h"
#include "state/NexthopGroupConfig.h"
#include "state/NexthopGroupHardware.h"

namespace sources::snapshot {

using NexthopGroup::NexthopGroupEntryKey;
using Routing::Hardware::NexthopGroupAdj;
using Routing::Hardware::NexthopGroupVia;
using Routing::Hardware::NexthopGroupVrfStatus;
using Routing::NexthopGroup::NexthopGroupConfigEntry;

// The display of groups calls the last label of a stack the top.
template <>
struct Codec<Kesh::MplsLabelOperation>
    : RecordCodec<Kesh::MplsLabelOperation, labelStackFields<TopLabel::last>> {};

template <class T>
struct Codec<state::SparseArray<T>> {
  using Index = typename state::SparseArray<T>::Index;
  static state::SparseArray<T> read(Node& node) {
    state::SparseArray<T> array;
    readMap<Index>(node,
                   [&](Index index, Node& value) { array.set(index, Codec<T>::read(value)); });
    return array;
  }
  static void write(Output& out, const state::SparseArray<T>& array) {
    Codec<Lumo::RbTreeMap<Index, T>>::write(out, array.members());
  }
};

// The key keeps names up to its room: longer ones would come back as another name.
template <>
struct Text<NexthopGroupEntryKey> {
  static std::optional<NexthopGroupEntryKey> parse(std::string_view text) {
    if (text.empty() || text.size() > NexthopGroupEntryKey::maxBytes) return {};
    return NexthopGroupEntryKey(Lumo::String(text));
  }
  static std::string expected(std::string_view) { return "a nexthop group name of 1 to 128 bytes"; }
  static Lumo::String write(const NexthopGroupEntryKey& key) { return key.nhgName(); }
};

namespace {

using ConfigEntry = NexthopGroupConfigEntry;

constexpr Field<ConfigEntry> sizeField() {
  auto limited = field<ConfigEntry, &ConfigEntry::size>("size");
  limited.read = [](Node& node, ConfigEntry& entry) {
    entry.size = static_cast<std::uint32_t>(node.number(Routing::NexthopGroup::maxEntries));
  };
  return limited;
}

constexpr Field<ConfigEntry> groupFields[] = {
    field<ConfigEntry, &ConfigEntry::type>("type"),
    sizeField(),
    field<ConfigEntry, &ConfigEntry::ttl>("ttl"),
    field<ConfigEntry, &ConfigEntry::sourceIntf>("sourceIntf"),
    field<ConfigEntry, &ConfigEntry::sourceIp>("sourceIp"),
    field<ConfigEntry, &ConfigEntry::destinationIp>("destinationIp"),
    field<ConfigEntry, &ConfigEntry::addressFamily>("addressFamily"),
    field<ConfigEntry, &ConfigEntry::mplsLabelStack>("mplsLabelStack"),
    field<ConfigEntry, &ConfigEntry::entryCounterType>("entryCounterType"),
    field<ConfigEntry, &ConfigEntry::hierarchicalFecsEnabled>("hierarchicalFecsEnabled"),
    field<ConfigEntry, &ConfigEntry::greKeyType>("greKeyType"),
};

void readGroups(Node& node, Target& builder) {
  readMap<Lumo::String>(node, [&](const Lumo::String& name, Node& value) {
    requireShown(value, "the nexthop group", name.str());
    const auto entry = Lumo::newEntity<ConfigEntry>(name);
    readFields(value, groupFields, *entry);
    builder.state.nhgConfig->nexthopGroup.insertOrAssign(name, entry);
  });
}

void writeGroups(Output& out, const state::DeviceState& device) {
  writeMap(out, device.nhgConfig->nexthopGroup,
           [&](const auto& entry) { writeFields(out, groupFields, *entry); });
}

void readIdentifiers(Node& node, Target& builder) {
  Unique<std::uint32_t> ids;
  readMap<NexthopGroupEntryKey>(node, [&](const NexthopGroupEntryKey& key, Node& value) {
    const auto id = Codec<std::uint32_t>::read(value);
    ids.add(id);
    builder.nexthopGroups->insert({key, id});
  });
  ids.check(node, [](std::uint32_t id) { return "the identifier " + std::to_string(id); });
}

void writeIdentifiers(Output& out, const state::DeviceState& device) {
  writeTable(out, device.nhEntryStatus->nexthopGroupEntry,
             [&](const auto& entry) { out.number(std::uint64_t{entry.nhgId}); });
}

constexpr Field<NexthopGroupVia> hardwareViaFields[] = {
    field<NexthopGroupVia, &NexthopGroupVia::route>("route"),
    field<NexthopGroupVia, &NexthopGroupVia::hop>("hop"),
    field<NexthopGroupVia, &NexthopGroupVia::l3Intf>("l3Intf"),
    field<NexthopGroupVia, &NexthopGroupVia::vlanId>("vlanId"),
    field<NexthopGroupVia, &NexthopGroupVia::l2Intf>("l2Intf"),
    field<NexthopGroupVia, &NexthopGroupVia::macAddr>("macAddr"),
    field<NexthopGroupVia, &NexthopGroupVia::tunnelId>("tunnelId"),
    field<NexthopGroupVia, &NexthopGroupVia::fecId>("fecId"),
};

} // namespace

template <>
struct Codec<NexthopGroupVia> : RecordCodec<NexthopGroupVia, hardwareViaFields> {};

namespace {

constexpr Field<NexthopGroupAdj> adjFields[] = {
    field<NexthopGroupAdj, &NexthopGroupAdj::via>("via"),
    field<NexthopGroupAdj, &NexthopGroupAdj::numProgrammedTunnels>("numProgrammedTunnels"),
    field<NexthopGroupAdj, &NexthopGroupAdj::sourceIp>("sourceIp"),
};

} // namespace

template <>
struct Codec<NexthopGroupAdj> : RecordCodec<NexthopGroupAdj, adjFields> {};

/// A VRF's groups stand right under its name.
template <>
struct Codec<NexthopGroupVrfStatus> {
  using Groups = decltype(NexthopGroupVrfStatus::nexthopGroupAdj);
  static NexthopGroupVrfStatus read(Node& node) { return {Codec<Groups>::read(node)}; }
  static void write(Output& out, const NexthopGroupVrfStatus& status) {
    Codec<Groups>::write(out, status.nexthopGroupAdj);
  }
};

Section nhgConfigSection() {
  return {"nhgConfig", readGroups,
          [](const state::DeviceState& device) { return !device.nhgConfig->nexthopGroup.empty(); },
          writeGroups};
}

Section nhEntrySection() {
  return {"nhEntryStatus", readIdentifiers,
          [](const state::DeviceState& device) {
            return device.nhEntryStatus->nexthopGroupEntry.members() > 0;
          },
          writeIdentifiers};
}

Section nhgHwSection() {
  return mapSection<&state::DeviceState::nhgHwStatus,
                    &Routing::Hardware::NexthopGroupStatus::vrfStatus>("nhgHwStatus");
}

} // namespace sources::snapshot
