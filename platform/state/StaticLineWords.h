// How the words of a static route's line are told apart (StaticLineParser.h of the command has the
// whole of it). What configures routes asks here whether a name would read back from its line.
#pragma once

#include "lumo/Export.h"

#include <cstddef>
#include <string_view>

namespace Routing {

/// What stands in the place of the vias.
inline constexpr std::string_view dropWord = "Null0";
inline constexpr std::string_view nexthopGroupWord = "Nexthop-Group";

/// Blanks, tabs, and all that ends a line.
inline constexpr std::string_view whiteSpace = " \t\n\v\f\r";

/// Whether what follows the next hops begins with this word, or the line ends: no group may have
/// the name.
LUMO_EXPORT bool beginsAttributes(std::string_view word);

/// Whether the word is read as the interface of a via.
LUMO_EXPORT bool readsAsInterface(std::string_view word);

/// The place of the " leak vrf NAME" at the end of a line; `npos` without it.
LUMO_EXPORT std::size_t findLeak(std::string_view line);
/// The name in it.
LUMO_EXPORT std::string_view leakedTo(std::string_view leak);

} // namespace Routing
