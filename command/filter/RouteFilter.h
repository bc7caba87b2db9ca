// A listing of some routes alone.
#pragma once

#include "command/filter/Expression.h"
#include "rova/CliSupport.h"

#include <optional>
#include <string>
#include <vector>

namespace command::filter {

/// Routes of one of the protocols for which the expression holds.
struct RouteChoice {
  std::vector<std::string> protocols = {}; ///< their codes; none for all
  std::optional<Expression> where = {};
};

/// Makes a loaded sorter show those routes alone. The sorter's state must not change until it has
/// printed.
template <class Family>
void filterRoutes(Rova::Sorter<Family>& sorter, RouteChoice choice);

} // namespace command::filter
