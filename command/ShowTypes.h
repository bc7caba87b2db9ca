// The catalogue of the library's types.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

/// "types [NAME]": the types of the registry, or one of them with its attributes. The model has the
/// attributes of all.
ExitStatus showTypes(const grammar::Parsed& parsed, const Options& options);

} // namespace command
