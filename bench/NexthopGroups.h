// What the display of nexthop groups costs.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

/// Renders so many groups of so many entries, each with a counter of its own, as text and as JSON;
/// the lowest of `repeats`. One JSON object on a line: costs in seconds, bytes, and by how many
/// bytes the residence grew at its highest.
std::string measureNexthopGroups(std::size_t groups, std::size_t entries, int repeats);

} // namespace bench
