// The sections of a snapshot: each is a field of the outermost object and fills one handle of the
// device's state.
#pragma once

#include "Collection.h"
#include "Field.h"

#include "state/DeviceBuilder.h"

namespace sources::snapshot {

/// What a snapshot is read into. What is not wanted is held to the same rules and not kept.
struct Target : state::DeviceBuilder {
  bool wantsConfigured = true; ///< configured routes that displays of routes do not look at
};

using Section = Field<Target, state::DeviceState>;

/// The sections in the order in which they are written.
std::span<const Section> sections();

Section vrfsSection();
Section forwardingSection();
Section forwarding6Section();
Section policyForwardingSection();
Section intfConfigSection();
Section ipSection();
Section ip6Section();
Section ipConfigSection();
Section ip6ConfigSection();
Section arpSection();
Section routeDistinguisherSection();
Section nhgConfigSection();
Section nhEntrySection();
Section nhgHwSection();
Section counterKeySection();
Section counterSection();
Section counterSnapshotSection();
Section hardwareSection();
Section hardware6Section();
Section tunnelFibSection();
Section evpnVxlanSection();
Section tunnelDirSection();
Section srTePolicySection();

/// A section that is one hashed collection of records of an entity.
template <auto Handle, auto Member, const auto& Fields>
constexpr Section recordSection(std::string_view name) {
  return {name,
          [](Node& node, Target& builder) {
            readRecords(node, (*(builder.state.*Handle)).*Member, Fields);
          },
          [](const state::DeviceState& device) { return !((*(device.*Handle)).*Member).empty(); },
          [](Output& out, const state::DeviceState& device) {
            writeMap(out, (*(device.*Handle)).*Member,
                     [&](const auto& record) { writeFields(out, Fields, record); });
          }};
}

/// A section that is one hashed collection of an entity, of values that have a codec.
template <auto Handle, auto Member>
constexpr Section mapSection(std::string_view name) {
  return {name,
          [](Node& node, Target& builder) {
            auto& map = (*(builder.state.*Handle)).*Member;
            map = Codec<std::decay_t<decltype(map)>>::read(node);
          },
          [](const state::DeviceState& device) { return !((*(device.*Handle)).*Member).empty(); },
          [](Output& out, const state::DeviceState& device) {
            const auto& map = (*(device.*Handle)).*Member;
            Codec<std::decay_t<decltype(map)>>::write(out, map);
          }};
}

/// A section that has an entity's fields.
template <auto Handle, const auto& Fields, Output::Layout layout>
constexpr Section entitySection(std::string_view name) {
  return {name,
          [](Node& node, Target& builder) { readFields(node, Fields, *(builder.state.*Handle)); },
          [](const state::DeviceState& device) { return anyPresent(Fields, *(device.*Handle)); },
          [](Output& out, const state::DeviceState& device) {
            writeFields(out, Fields, *(device.*Handle), layout);
          }};
}

} // namespace sources::snapshot
