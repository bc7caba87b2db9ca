// What the library takes for granted of a call, looked at before the call.
//
// The library stops the process over what it holds to be a fault of its caller. One row a
// constructor or method names the check that finds such a fault first and throws. A check only
// reads, and touches no Python object: it may run without Python's lock, but needs the activity
// lock, so that nobody changes what it has seen before the call is made.
#pragma once

#include "lumo/Exception.h"
#include "lumo/Reflect.h"

#include <string>

namespace rova_python {

/// A call that is about to be made, as its check sees it.
class Call {
 public:
  /// A constructor with its arguments.
  Call(const Lumo::TypeRecord& type, Lumo::ArgumentSpan arguments)
      : type_(type), names_(type.constructorArguments), arguments_(arguments) {}
  /// A constructor whose object was read from a text.
  explicit Call(Lumo::GenericIf& object) : type_(object.type()), object_(&object) {}
  /// A method.
  Call(Lumo::GenericIf& object, const Lumo::AttributeRecord& method, Lumo::ArgumentSpan arguments)
      : type_(*method.owner),
        method_(&method),
        names_(method.arguments.data()),
        arguments_(arguments),
        object_(&object) {}

  const Lumo::TypeRecord& type() const { return type_; }
  /// Null for a constructor.
  const Lumo::AttributeRecord* method() const { return method_; }

  /// The argument of that name, or else the object's attribute.
  template <class T>
  T value(std::string_view name) const {
    return Lumo::unwrap<T>(valueOf(name));
  }
  /// The object of a method.
  template <class T>
  const T& object() const {
    return *static_cast<const T*>(object_->voidPtrIs(Lumo::typeOf<T>()));
  }

  /// Throws for a state or an order of calls that the library does not take.
  [[noreturn]] void refuse(const std::string& why) const {
    throw Lumo::InternalException(name() + ": " + why);
  }
  /// Throws for a value that the library does not take.
  [[noreturn]] void refuseValue(const std::string& why) const {
    throw Lumo::RangeException(name() + ": " + why);
  }

 private:
  std::string name() const;
  Lumo::GenericPtr valueOf(std::string_view name) const;

  const Lumo::TypeRecord& type_;
  const Lumo::AttributeRecord* method_ = nullptr;
  const Lumo::ArgumentRecord* names_ = nullptr;
  Lumo::ArgumentSpan arguments_;
  Lumo::GenericIf* object_ = nullptr;
};

/// Throws `Lumo::InternalException` or `Lumo::RangeException` for a call over which the library
/// would stop the process.
void needPreconditions(const Call& call);

} // namespace rova_python
