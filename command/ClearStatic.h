// clear static interface NAME.
#pragma once

#include "command/Options.h"
#include "command/Words.h"

namespace command {

ExitStatus clearStatic(Words& words, const Options& options);

} // namespace command
