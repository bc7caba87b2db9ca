// Messages on standard error.
#pragma once

#include <string_view>

namespace command::terminal {

/// Writes a message and a line end. The "rova:" that it begins with stands out.
void tell(std::string_view message);

} // namespace command::terminal
