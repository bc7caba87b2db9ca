// Devices to measure on: a route table of any size with the mask lengths of the Internet's, the
// same for the same arguments on every machine.
#pragma once

#include "state/DeviceBuilder.h"

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// That many different prefixes of the family, a default route among them, in no order.
template <class Prefix>
std::vector<Prefix> makePrefixes(std::size_t count);

/// The prefixes of a file, one a line. Raises std::runtime_error that names file, line and text.
template <class Prefix>
std::vector<Prefix> readPrefixes(const std::string& path);

/// Whether the file's first prefix is one of IPv6. Raises std::runtime_error.
bool holdsIp6Prefixes(const std::string& path);

/// How many FECs a table of that many routes has: one for 20 routes, at most 50,000.
std::size_t fecCount(std::size_t routes);

/// Enters a route for each prefix into the default VRF, and the FECs that they share: one in a
/// hundred leads over two to four vias, half of those with weights; one in a hundred is of a
/// connected network.
template <class Prefix>
void fillDevice(state::DeviceBuilder& device, const std::vector<Prefix>& prefixes);

} // namespace bench
