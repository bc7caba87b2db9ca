// A value of any type behind one interface: what access by name takes and gives.
#pragma once

#include "lumo/Ptr.h"
#include "lumo/Strep.h"
#include "lumo/TypeName.h"

#include <cstddef>
#include <utility>

namespace Lumo {

class LUMO_EXPORT GenericIf : public PtrInterface {
 public:
  /// The name of the value's type.
  virtual const char* type() const = 0;
  /// The address of the value; raises a range error when it is not of the type `expected`.
  virtual void* voidPtrIs(const char* expected) = 0;
  /// Raises an internal error for a type without a hash.
  virtual std::uint32_t hash() const = 0;
  virtual String strRep() const = 0;
};

[[noreturn]] void throwTypeException(const char* expected, const char* found);
[[noreturn]] void throwUnhashableException(const char* type);
[[noreturn]] void throwOpNotSupportedException(const char* attribute, const char* operation);
/// Raises the type exception unless the two names are one text.
void requireType(const char* expected, const char* found);

/// A copy of a value.
template <class T>
class GenericValue final : public GenericIf {
 public:
  explicit GenericValue(T value) : value_(std::move(value)) {}
  const char* type() const override { return TypeName<T>::value; }
  void* voidPtrIs(const char* expected) override { return requireType(expected, type()), &value_; }
  std::uint32_t hash() const override {
    if constexpr (requires { std::uint32_t{value_.hash()}; }) {
      return value_.hash();
    } else {
      throwUnhashableException(type());
    }
  }
  String strRep() const override { return valueToStrep(value_); }

 private:
  T value_;
};

template <class T>
Ptr<GenericIf> wrapAttrValue(T value) {
  return Ptr<GenericIf>(new GenericValue<std::remove_cvref_t<T>>(std::move(value)));
}

/// The value inside; raises a range error when there is none or it is of another type.
template <class T>
const T& unwrap(const Ptr<GenericIf>& value) {
  if (!value) throwTypeException(TypeName<T>::value, "None");
  return *static_cast<const T*>(value->voidPtrIs(TypeName<T>::value));
}

} // namespace Lumo
