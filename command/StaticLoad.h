// static load FILE.
#pragma once

#include "command/Options.h"
#include "command/Words.h"

namespace command {

ExitStatus loadStatic(Words& words, const Options& options);

} // namespace command
