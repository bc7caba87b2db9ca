// One owned reference to a Python object.
#pragma once

#include <Python.h>

#include <utility>

namespace rova_python {

/// Owns one reference, or none. Copying takes another one; Python's lock must be held.
class Ref {
 public:
  Ref() = default;
  /// Takes over a reference that the caller owns; null gives an empty one.
  static Ref steal(PyObject* object) { return Ref(object); }
  /// Takes a reference of its own to what another owns.
  static Ref borrow(PyObject* object) {
    Py_XINCREF(object);
    return Ref(object);
  }
  static Ref none() { return borrow(Py_None); }
  static Ref boolean(bool value) { return borrow(value ? Py_True : Py_False); }

  Ref(const Ref& other) : Ref(other.object_) { Py_XINCREF(object_); }
  Ref(Ref&& other) noexcept : object_(other.release()) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() { Py_XDECREF(object_); }

  PyObject* get() const { return object_; }
  /// Gives the reference to the caller.
  PyObject* release() { return std::exchange(object_, nullptr); }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  explicit Ref(PyObject* object) : object_(object) {}
  PyObject* object_ = nullptr;
};

} // namespace rova_python
