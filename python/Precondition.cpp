#include "Precondition.h"

#include "Checks.h"
#include "Text.h"

namespace rova_python {

namespace {

struct Precondition {
  std::string_view type;
  std::string_view method; ///< empty for the constructor
  void (*check)(const Call& call);
};

constexpr Precondition preconditions[] = {
    {"Rova::Address6AssignmentChecker", "check", needInterfaces},
    {"Rova::NexthopGroupCliCounterInterface", "getCounters", refuseAbstract},
    {"Rova::NexthopGroupCounterHelper", "getCounters", needCounterTables},
    {"Rova::NexthopGroupHelper", "render", needTablesOfCounterHelper},
    {"Rova::RdAssignmentChecker", "", needRouteDistinguisherInputs},
    {"Rova::RdAssignmentChecker", "handleInitialized", needRouteDistinguisherInputs},
    {"Rova::Route6Sorter", "longestPrefixMatch", needAnswer6},
    {"Rova::Route6Sorter", "printRoutes", needPrintable6},
    {"Rova::Route6Sorter", "protocolString", needNamedType6},
    {"Rova::RouteSorter", "longestPrefixMatch", needAnswer4},
    {"Rova::RouteSorter", "printRoutes", needPrintable4},
    {"Rova::RouteSorter", "protocolString", needNamedType4},
    {"Rova::SortedTunVia", "", needEncapsulation},
    {"Rova::SortedTunViaSet", "", needEncapsulations},
    {"Rova::StaticRoutesCliSaver", "save", needOneWayVias},
    {"Rova::StaticRoutesRibCommon", "dump", needFormatAttribute},
};

} // namespace

std::string Call::name() const {
  return pythonName(type_) + (method_ ? std::string(".") + method_->name : std::string());
}

Lumo::GenericPtr Call::valueOf(std::string_view name) const {
  for (std::size_t i = 0; i < arguments_.size(); ++i) {
    if (name == names_[i].name) return arguments_[i];
  }
  return Lumo::read(*object_, name);
}

void needPreconditions(const Call& call) {
  const std::string_view method = call.method() ? call.method()->name : "";
  for (const Precondition& row : preconditions) {
    if (row.method == method && row.type == call.type().name) return row.check(call);
  }
}

} // namespace rova_python
