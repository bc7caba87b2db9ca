// Parts of a snapshot by themselves, for a store that keeps them apart.
#pragma once

#include "state/DeviceState.h"

#include <string>
#include <string_view>

namespace sources::snapshot {

/// The value of a section, as the snapshot of that device has it; empty for one that it leaves out.
/// The name is that of a section.
std::string sectionText(const state::DeviceState& device, std::string_view name);

/// A route as an element of a configuration's or an input's routes.
std::string routeText(const Routing::Route& route);

/// Whether displays of routes look at a configured route: a listing asks for a default route, and a
/// summary counts dynamic routes apart.
bool isListed(const Routing::Route& route);

/// A name as a JSON string, in quotes.
std::string quotedText(std::string_view name);

} // namespace sources::snapshot
