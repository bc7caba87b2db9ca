// What devices of very many VRFs, interfaces or nexthop groups cost to make and to load.
#pragma once

#include <string>

namespace bench {

/// Makes devices of 20,000 VRFs, of 50,000 interfaces and of 20,000 nexthop groups out of what a
/// kernel tells, saves and loads them, and does the same with a tenth as many; the lowest of
/// `repeats`. One JSON object on a line: seconds of processor time of each.
std::string measureBreadth(int repeats);

} // namespace bench
