// The listing of the whole default VRF over a device, as a command makes it.
#pragma once

#include "rova/CliSupport.h"
#include "state/DeviceBuilder.h"

namespace bench {

enum class Form : std::uint32_t { text = 1, model = 2 };

/// A sorter of that class over all routes of the default VRF, or over its host table,
/// loaded.
Lumo::Ptr<Rova::RouteSorter> makeSorter(const state::DeviceState& device, Kesh::Prefix, bool host);
Lumo::Ptr<Rova::Route6Sorter> makeSorter(const state::DeviceState& device, Kesh::Ip6Prefix,
                                         bool host);

/// Prints the listing. Raises std::runtime_error if it was stopped.
template <class Sorter>
void print(Sorter& sorter, int fd, Form form);

} // namespace bench
