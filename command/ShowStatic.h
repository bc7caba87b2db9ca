// show running-config static, show static.
#pragma once

#include "command/Options.h"
#include "command/Words.h"

namespace command {

ExitStatus showStaticConfig(Words& words, const Options& options);
ExitStatus showStatic(Words& words, const Options& options);

} // namespace command
