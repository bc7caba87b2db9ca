// Enters the library's types in the registry of the process when the library is loaded, and their
// names in a section that tools read without loading it.
#include "rova/CliSupport.h"

#include <array>
#include <string_view>

namespace Rova {

namespace {

/// A type's name and record; the order of this table is that of the registration.
struct Exported {
  std::string_view name;
  const Lumo::TypeRecord* record;
};

template <class Type>
constexpr Exported exported() {
  return {Lumo::TypeName<Type>::value, &Lumo::typeOf<Type>()};
}

constexpr Exported types[] = {
    exported<PolicyInfo>(),
    exported<ClearIntfRoutesAndViasHelper>(),
    exported<CachedFec>(),
    exported<Route6Summary>(),
    exported<NexthopGroupCounterHelper>(),
    exported<RdAssignmentChecker>(),
    exported<RouteSorter>(),
    exported<PolicyInfoSet>(),
    exported<AddrMatchType>(),
    exported<InvalidNextHopChecker>(),
    exported<RouteSummary>(),
    exported<StaticRoutesCliSaver>(),
    exported<Address6AssignmentChecker>(),
    exported<InvalidNextHop6Checker>(),
    exported<NexthopGroupCliCounterInterface>(),
    exported<AddressQueryParams>(),
    exported<SortedTunViaSet>(),
    exported<NexthopGroupSummaryHelper>(),
    exported<CachedNhgVia>(),
    exported<NexthopInfo>(),
    exported<RovaConsts>(),
    exported<RouteSortKey>(),
    exported<NexthopGroupHelper>(),
    exported<AddressAssignmentChecker>(),
    exported<CounterEntry>(),
    exported<StaticRoutesRibCommon>(),
    exported<Route6Sorter>(),
    exported<Address6QueryParams>(),
    exported<SortedTunVia>(),
    exported<AddressQueryResult>(),
    exported<CachedVia>(),
    exported<CounterIndex>(),
};

constexpr std::size_t namesLength() {
  std::size_t length = 0;
  for (const Exported& type : types) length += type.name.size() + 1;
  return length;
}

/// The names, each ended by a NUL, in the reverse of the order above.
constexpr auto reversedNames() {
  std::array<char, namesLength()> names{};
  std::size_t at = 0;
  for (std::size_t i = std::size(types); i-- > 0;) {
    for (const char c : types[i].name) names[at++] = c;
    names[at++] = '\0';
  }
  return names;
}

[[gnu::section(".lumo.type"), gnu::used]] constexpr auto typeNames = reversedNames();

struct Registration {
  Registration() {
    for (const Exported& type : types) Lumo::typeNodeIs(*type.record);
  }
};
const Registration registration;

} // namespace

} // namespace Rova
