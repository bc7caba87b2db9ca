// What a user may have meant by a name that does not exist.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace command {

/// The first of the known names that is written nearly like `name`, null if none is: at most two
/// letters are missing, superfluous, wrong or swapped with their neighbour, and at most a third of
/// the name. Capitals count as small letters.
const std::string* nearest(std::string_view name, const std::vector<std::string>& known);

/// `there is no interface "Ethrnet1"; did you mean "Ethernet1"?`, without the question when no
/// known name is near. `kind` says what the names are of.
std::string noSuch(std::string_view kind, std::string_view name,
                   const std::vector<std::string>& known);

} // namespace command
