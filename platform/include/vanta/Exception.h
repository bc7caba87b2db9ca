// The exceptions of the shared tables.
#pragma once

#include <stdexcept>
#include <string>

namespace Tembra {

#define TEMBRA_EXPORT __attribute__((visibility("default")))

/// The base of everything that a shared table raises.
class TEMBRA_EXPORT Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~Exception() override;
};

/// A record that was read is not whole: its writer died, or its memory was damaged.
class TEMBRA_EXPORT CorruptionDetectedException : public Exception {
 public:
  using Exception::Exception;
  ~CorruptionDetectedException() override;
};

/// A write operation was called on a table that is open for reading only.
class TEMBRA_EXPORT NoPermissionException : public Exception {
 public:
  using Exception::Exception;
  ~NoPermissionException() override;
};

/// An operation that the table at hand does not offer.
class TEMBRA_EXPORT UnimplementedException : public Exception {
 public:
  using Exception::Exception;
  ~UnimplementedException() override;
};

} // namespace Tembra
