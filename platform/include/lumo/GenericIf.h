// A value of any type behind one interface: what access by name takes and gives.
#pragma once

#include "lumo/Ptr.h"
#include "lumo/String.h"

namespace Lumo {

struct TypeRecord;
struct AttributeOp;

/// An object whose type is known when the program runs; see lumo/Reflect.h for what it can do.
class LUMO_EXPORT GenericIf : public PtrInterface {
 public:
  explicit GenericIf(bool constant) : constant_(constant) {}

  /// The record of the object's type.
  virtual const TypeRecord& type() const = 0;
  /// The address of the value or entity, null for a null handle; raises a range error when it is
  /// not of the type `expected`.
  virtual void* voidPtrIs(const TypeRecord& expected) = 0;
  /// Raises an internal error for a type without a hash.
  virtual std::uint32_t hash() const = 0;
  /// The strep text.
  virtual String strRep() const = 0;

  /// Whether the object was reached through a const handle: it can then be read only.
  bool constant() const { return constant_; }

 private:
  bool constant_;
};

// The exceptions of access by name, a range error for a wrong type, internal errors else:
[[noreturn]] LUMO_EXPORT void throwTypeException(const char* expected, const char* found);
[[noreturn]] LUMO_EXPORT void throwUnhashableException(const char* type);
[[noreturn]] LUMO_EXPORT void throwOpNotSupportedException(const TypeRecord& type,
                                                           const AttributeOp& op);
/// A constant object where one that can be changed is needed.
[[noreturn]] LUMO_EXPORT void throwConstantException(const char* type);

} // namespace Lumo
