// The vocabulary of route types: the codes and words of each, and the tests by which the rest of
// the library tells them apart.
#pragma once

#include "lumo/String.h"
#include "rova/core/Export.h"
#include "state/RouteType.h"

#include <string_view>

namespace Rova {

/// The texts of one route type.
struct RouteTypeStrings {
  const char* pcode;        ///< the code in a route line
  const char* pcodeWord;    ///< the word for the code in the model
  const char* protocolCode; ///< what a protocol filter compares with; it groups types
  const char* summaryWord;  ///< the counter under which a summary counts the type
};

/// The texts of a type. A number outside the vocabulary stops the process.
ROVA_EXPORT const RouteTypeStrings& routeTypeStringsLookup(Routing::Fib::RouteType type);
ROVA_EXPORT const RouteTypeStrings& routeTypeStringsLookup(Routing6::Fib::RouteType type);

/// The code of a type in a route line, and its word in the model:
template <class RouteType>
const char* pcode(RouteType type) {
  return routeTypeStringsLookup(type).pcode;
}
template <class RouteType>
const char* pcodeAsWord(RouteType type) {
  return routeTypeStringsLookup(type).pcodeWord;
}

/// The code of the host route table, and its word. Every number has them.
ROVA_EXPORT char hcode(Routing::Fib::RouteType type);
ROVA_EXPORT char hcode(Routing6::Fib::RouteType type);
/// The word of the host route table for a type.
ROVA_EXPORT const char* hcodeWord(Routing::Fib::RouteType type);
ROVA_EXPORT const char* hcodeWord(Routing6::Fib::RouteType type);

/// What displays tell types apart by, the same of both families:
template <class RouteType>
constexpr bool isInvalid(RouteType type) {
  return type == RouteType::invalid;
}
template <class RouteType>
constexpr bool isAttached(RouteType type) {
  return type == RouteType::attached;
}
template <class RouteType>
constexpr bool isNexthopGroup(RouteType type) {
  return type == RouteType::nexthopGroup;
}
template <class RouteType>
constexpr bool isMartian(RouteType type) {
  return type == RouteType::martian;
}
constexpr bool isReceive(Routing::Fib::RouteType type) {
  return type >= Routing::Fib::RouteType::receive &&
         type <= Routing::Fib::RouteType::receiveDirectedBroadcast;
}
constexpr bool isReceive(Routing6::Fib::RouteType type) {
  return type == Routing6::Fib::RouteType::receive || type == Routing6::Fib::RouteType::receiveAll;
}

/// Whether a protocol filter takes the route: the empty filter takes every route, without a look at
/// its type; any other is compared with the type's `protocolCode` as a whole.
template <class Route>
bool protocolMatch(const Route& route, std::string_view protocol) {
  return protocol.empty() || protocol == routeTypeStringsLookup(route.routeType).protocolCode;
}

/// The word and code of a configured route's action. A value above nexthopGroup stops the process.
ROVA_EXPORT const char* ribRouteType(Routing::RouteType type);
/// The code of the action, with which a dump of static routes begins a line.
ROVA_EXPORT const char* ribRouteTypeCode(Routing::RouteType type);

/// The legends of the listings.
Lumo::String legendOf(Routing::Fib::RouteType);
Lumo::String legendOf(Routing6::Fib::RouteType);
/// The legend of the host route table.
Lumo::String hostLegendOf(Routing::Fib::RouteType);
Lumo::String hostLegendOf(Routing6::Fib::RouteType);

} // namespace Rova

/// The code of the first IPv4 type, by ascending number, whose word `word` begins with; a word that
/// begins with none stops the process.
extern "C" ROVA_EXPORT const char* Rova_protocolCodeWordToCode(const char* word);
