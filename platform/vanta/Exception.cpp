#include "vanta/Exception.h"

namespace Tembra {

// Defined here, so that each exception type has one home in every process.
Exception::~Exception() = default;
CorruptionDetectedException::~CorruptionDetectedException() = default;
NoPermissionException::~NoPermissionException() = default;
UnimplementedException::~UnimplementedException() = default;

} // namespace Tembra
