// What the printer throws out of any of its calls.
#pragma once

#include "lumo/Exception.h"

#include <exception>
#include <string>

namespace scrivo {

/// The output has no more reader: the user interrupted it, or the other end of the pipe is gone.
/// Whoever opened the printer catches it and ends the display as if it were complete.
class LUMO_EXPORT sigintException : public std::exception {
 public:
  /// `reason` is a literal; it is kept by its address.
  explicit sigintException(const char* reason) noexcept : reason_(reason) {}
  ~sigintException() override;
  const char* what() const noexcept override { return reason_; }

 private:
  const char* reason_;
};

/// The descriptor refused the output. `number()` is the system's error number, and `what()` says
/// both what was being done and the system's text.
class LUMO_EXPORT WriteException : public Lumo::ErrnoException {
 public:
  explicit WriteException(int number);
  ~WriteException() override;
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  std::string message_;
};

} // namespace scrivo
