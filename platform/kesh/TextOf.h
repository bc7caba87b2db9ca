// The text of a value that writes itself into a buffer.
#pragma once

#include "kesh/Address.h"

#include <string_view>

namespace Kesh {

/// Of an address or a prefix.
template <class Value>
Lumo::String textOf(const Value& value) {
  char buffer[maxAddressText + sizeof "/128"];
  return Lumo::String(std::string_view(buffer, value.writeText(buffer)));
}

} // namespace Kesh
