// What is to be known of the kernel's routes beside those that a device has of them.
#pragma once

#include "sources/RouteFacts.h"
#include "sources/kernel/KernelState.h"

namespace sources::kernel {

RouteFacts routeFacts(const KernelState& kernel);

} // namespace sources::kernel
