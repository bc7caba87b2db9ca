// What the routing hardware says of itself.
#pragma once

#include "lumo/Ptr.h"

#include <cstdint>

namespace Routing::Hardware {

class Status : public Lumo::PtrInterface {
 public:
  /// The largest total of via weights that one FEC may have.
  std::uint32_t maxUcmpWeight = 0xffffffff;
};

} // namespace Routing::Hardware

namespace Routing6::Hardware {

class Status : public Lumo::PtrInterface {
 public:
  std::uint32_t maxUcmpWeight = 0xffffffff;
};

} // namespace Routing6::Hardware
