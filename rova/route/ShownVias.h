// What the vias of a resolved line show, as values. It follows the forms of RouteLine.cpp.
#pragma once

#include "rova/route/RouteLine.h"
#include "rova/route/ShownRoutes.h"

namespace Rova {

/// How the listing prints, as far as it decides what a line shows.
struct ShownForm {
  bool isForm6 = false;
  bool degradeNhgModel = false;
};

/// Puts what the vias of the line show in place of what `vias` holds, and enters the next hops that
/// this hangs on.
void readShownVias(const RouteLine& line, ShownForm form, ShownVias& vias, AskedHops& askedHops);

} // namespace Rova
