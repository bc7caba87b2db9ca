// The words of the fields that have few.
#pragma once

#include "command/filter/Field.h"

namespace command::filter {

/// Those of routeType in the JSON of a listing, of both families.
const std::vector<FieldWord>& typeWords();
/// Those that a command has for protocols, with their codes.
const std::vector<FieldWord>& protocolWords();
/// What listings call tunnels and encapsulations.
const std::vector<FieldWord>& tunnelWords();

} // namespace command::filter
