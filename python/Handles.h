// The handles of one VRF and family as a dictionary, by the names that the library's constructors
// and methods give to their arguments.
#pragma once

#include "Ref.h"

#include "state/DeviceState.h"

#include <optional>
#include <string>

namespace rova_python {

/// What a query may be limited to.
struct HandleQuery {
  const state::DeviceState& device;
  const state::VrfState& vrf;
  std::optional<std::string> interface; ///< nothing: every interface
};

Ref handles4(const HandleQuery& query);
Ref handles6(const HandleQuery& query);

} // namespace rova_python
