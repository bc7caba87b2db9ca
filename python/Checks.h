// The checks behind the rows of Precondition.cpp. Each throws through its call, or returns.
#pragma once

#include "Precondition.h"

namespace rova_python {

// Sorters.

/// A query for one address, that found at most one route.
void needAnswer4(const Call& call);
void needAnswer6(const Call& call);
/// Routes of types with a name, on FECs that can be shown.
void needPrintable4(const Call& call);
void needPrintable6(const Call& call);
/// That of the route that is asked for.
void needNamedType4(const Call& call);
void needNamedType6(const Call& call);

// Tunnel vias.

/// A kind of encapsulation that exists: others have no order.
void needEncapsulation(const Call& call);
/// The same of all vias of the tunnel that a set is made of.
void needEncapsulations(const Call& call);

// The others.

/// For what only a derived class does.
[[noreturn]] void refuseAbstract(const Call& call);
/// The interfaces that an address is checked against.
void needInterfaces(const Call& call);
void needCounterTables(const Call& call);
void needTablesOfCounterHelper(const Call& call);
/// A directory that holds nothing else.
void needRouteDistinguisherInputs(const Call& call);
/// No via that has both a hop and a VTEP.
void needOneWayVias(const Call& call);
void needFormatAttribute(const Call& call);

} // namespace rova_python
