// Printing a listing, as a command does.
#pragma once

#include "rova/CliSupport.h"
#include "state/DeviceBuilder.h"

namespace bench {

enum class Form : std::uint32_t { text = 1, model = 2 };

/// Prints the listing. Raises std::runtime_error if it was stopped.
template <class Sorter>
void print(Sorter& sorter, int fd, Form form);

} // namespace bench
