// The framework's clock.
#pragma once

namespace Lumo::System {

/// Seconds of a clock that never goes back; time stamps of one process can be subtracted.
double currentTime();

} // namespace Lumo::System
