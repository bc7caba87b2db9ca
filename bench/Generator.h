// Devices to measure on: a route table of any size with the mask lengths of the Internet's, the
// same for the same arguments on every machine.
#pragma once

#include "state/DeviceBuilder.h"

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// What the routes of a device lead over; docs/performance.md says what each is.
enum class Shape { plain, tunnels, policies, host };

/// That many different prefixes of the family, a default route among them, in no order.
template <class Prefix>
std::vector<Prefix> makePrefixes(std::size_t count);

/// The prefixes of a file, one a line. Raises std::runtime_error that names file, line and text.
template <class Prefix>
std::vector<Prefix> readPrefixes(const std::string& path);

/// Whether the file's first prefix is one of IPv6. Raises std::runtime_error.
bool holdsIp6Prefixes(const std::string& path);

/// That many different IPv4 host prefixes, in no order.
std::vector<Kesh::Prefix> makeHostPrefixes(std::size_t count);

/// How many FECs the routes of a table name: one for 20 routes, at most 50,000; one for 50 of the
/// shape with policies.
std::size_t fecCount(Shape shape, std::size_t routes);

/// Enters a route for each prefix into the default VRF, and the FECs that they share: one in a
/// hundred leads over two to four vias, half of those with weights; one in a hundred is of a
/// connected network.
template <class Prefix>
void fillDevice(state::DeviceBuilder& device, const std::vector<Prefix>& prefixes);

/// Enters an IPv4 route for each prefix, each on a FEC with one via on a tunnel of its own, SR or
/// LDP in turn. A tunnel has four vias, which lead over FECs to four next hops, each below a stack
/// of three labels.
void fillTunnelDevice(state::DeviceBuilder& device, const std::vector<Kesh::Prefix>& prefixes);

/// Enters an IPv4 route for each prefix, each on the FEC of an SR-TE policy. A policy has two
/// segment lists, each on a tunnel of its own with two next hops and a stack of three labels.
void fillPolicyDevice(state::DeviceBuilder& device, const std::vector<Kesh::Prefix>& prefixes);

/// Enters a route for each host prefix as `fillDevice` does, and one neighbour for five of them, at
/// addresses that have no route.
void fillHostDevice(state::DeviceBuilder& device, const std::vector<Kesh::Prefix>& prefixes);

} // namespace bench
