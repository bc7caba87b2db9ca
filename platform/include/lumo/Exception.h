// The exceptions of the object framework.
#pragma once

#include "lumo/Export.h"

#include <stdexcept>
#include <string>

namespace Lumo {

/// The base of the framework's exceptions; `what()` is the whole message.
class LUMO_EXPORT Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~Exception() override;
};

/// A value stands outside its type's range, or a text cannot be read as its type.
class LUMO_EXPORT RangeException : public Exception {
 public:
  using Exception::Exception;
  ~RangeException() override;
};

/// A rule between parts of the program was broken.
class LUMO_EXPORT InternalException : public Exception {
 public:
  using Exception::Exception;
  ~InternalException() override;
};

/// A system call failed. The message is the system's text for the error number; the caller's text
/// says what was being done.
class LUMO_EXPORT ErrnoException : public Exception {
 public:
  ErrnoException(int number, std::string text);
  ~ErrnoException() override;
  int number() const { return number_; }
  const std::string& text() const { return text_; }

 private:
  int number_;
  std::string text_;
};

/// The system's text for an error number, as `strerror_r` gives it.
std::string errorString(int number);

} // namespace Lumo
