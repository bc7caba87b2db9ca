// The catalogue of the library's types.
#pragma once

#include "command/Options.h"
#include "command/Words.h"

namespace command {

/// "types [NAME]": the types of the registry, or one of them with its attributes. The model has the
/// attributes of all.
ExitStatus showTypes(Words& words, const Options& options);

} // namespace command
