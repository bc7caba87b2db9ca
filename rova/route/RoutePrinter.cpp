#include "RoutePrinter.h"

#include "lumo/Assert.h"
#include "rova/core/Flush.h"
#include "rova/core/Trace.h"

namespace Rova {

template <class Family>
void RoutePrinter<Family>::printRoute(const Route& route) {
  ROVA_TRACE(8, "bool Rova::printRoute(" << Family::sorterTypeName << ", Route, scrivo::Printer)");
  const auto type = route.routeType;
  FecLook& look = looks_.look(route.fecId, [&] { return resolver_.lookAt(route); });
  if (!isReceive(type) && !isPrintable(sorter_, route, look.forwards)) return;
  if (!sorter_.asksFor(route)) return;
  if (!look.fec) return printMissingFec(route);
  RouteLine line = resolver_.lineOf(route);
  if (resolver_.sharesVias(route, line, look)) line.shared = &look.vias;
  const bool isKnown = line.shared && line.shared->isKnown(resolver_.hasV6Nexthop());
  if (isKnown || resolver_.resolve(route, look, line)) {
    lines_.printFormatRoute(type, line, resolver_.hasV6Nexthop());
  }
}

template <class Family>
void RoutePrinter<Family>::printSelected() {
  const auto printNext = [this](const Route& route) {
    printRoute(route);
    flushIfFull(printer_);
  };
  const auto expect = [filter = sorter_.routeFilter().get()](const Route& route) {
    if (filter) filter->expect(route);
  };
  printLookingAhead(sorter_.sortedRouteMap(), looks_, printNext, expect);
}

template <class Family>
void RoutePrinter<Family>::printMissingFec(const Route& route) {
  LUMO_ASSERT(Family::toleratesMissingFec, "fec");
  printer_.addFrills("%-5s   %s <FecId %llx not found>", pcode(route.routeType),
                     route.key.stringValue(), route.fecId.value());
}

template class RoutePrinter<Ip4Family>;
template class RoutePrinter<Ip6Family>;

} // namespace Rova
