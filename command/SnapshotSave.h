// snapshot save FILE.
#pragma once

#include "command/Options.h"
#include "command/Words.h"

namespace command {

ExitStatus saveSnapshot(Words& words, const Options& options);

} // namespace command
