// The names behind the identifiers of interfaces that rows have.
#pragma once

#include "sources/database/ChangeLog.h"

#include "kesh/IntfId.h"
#include "lumo/HashMap2018.h"

namespace sources::database {

using InterfaceSet = Lumo::HashMap2018<Kesh::IntfId, bool>;

/// Makes the rows those of the interfaces.
void replaceInterfaces(Connection& connection, ChangeLog& log, const InterfaceSet& interfaces);

} // namespace sources::database
