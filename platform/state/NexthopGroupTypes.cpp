#include "state/NexthopGroupTypes.h"

#include "lumo/ValueForm.h"

Lumo::String Routing::stringValue(GreKeyType type) { return Lumo::plainText(type); }

namespace Routing::NexthopGroup {

Lumo::String stringValue(NexthopGroupType type) { return Lumo::plainText(type); }
Lumo::String stringValue(EntryCounterType type) { return Lumo::plainText(type); }

} // namespace Routing::NexthopGroup
