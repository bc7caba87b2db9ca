// Exceptions across the border: C++ ones become Python ones, and Python ones pass through C++.
#pragma once

#include "Ref.h"

#include <string>

namespace rova_python {

/// Thrown where a Python exception is set: it unwinds C++ up to `guarded`.
struct PythonError {};

/// Sets the Python exception that stands for the C++ exception being handled. Call it in a handler.
void raiseCurrent() noexcept;

/// Runs `body`, which gives a `Ref`, for a function that Python calls: an exception becomes a
/// Python exception and a null result.
template <class Body>
PyObject* guarded(Body body) noexcept {
  try {
    return body().release();
  } catch (...) {
    raiseCurrent();
    return nullptr;
  }
}

/// The same for the functions that return an integer, -1 for an exception.
template <class Body>
int guardedInt(Body body) noexcept {
  try {
    return body();
  } catch (...) {
    raiseCurrent();
    return -1;
  }
}

/// Sets a Python exception and throws `PythonError`.
[[noreturn]] void raise(PyObject* exception, const std::string& message);

/// Takes over the result of a call into Python; throws `PythonError` for null.
inline Ref owned(PyObject* result) {
  if (!result) throw PythonError();
  return Ref::steal(result);
}
/// Throws `PythonError` for the -1 of a call into Python.
inline void check(int result) {
  if (result < 0) throw PythonError();
}

/// Enters a value into a dictionary under a name.
inline void setItem(const Ref& dictionary, const char* name, const Ref& value) {
  check(PyDict_SetItemString(dictionary.get(), name, value.get()));
}

/// Enters the exception classes in the module and returns it; null with an exception set.
PyObject* addErrors(PyObject* module);

} // namespace rova_python
