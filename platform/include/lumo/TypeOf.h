// From a C++ type to its record, and values in and out of `GenericIf`.
#pragma once

#include "lumo/Type.h"

#include <cstring>
#include <optional>
#include <type_traits>
#include <utility>

namespace Lumo {

/// Puts the record together; `typeOf` keeps one of each type.
template <class T>
constexpr TypeRecord makeTypeRecord();

/// The record of a type without attribute lines; lumo/TypeRecordOf.h makes it.
template <class T>
inline constexpr TypeRecord plainType = makeTypeRecord<T>();

/// The record of `T`; for a handle that of its entity.
template <class T>
constexpr const TypeRecord& typeOf() {
  using Bare = std::remove_cvref_t<T>;
  if constexpr (isHandle<Bare>) {
    return typeOf<typename Bare::Element>();
  } else if constexpr (Attributed<Bare>) {
    return Bare::lumoType;
  } else {
    return plainType<Bare>;
  }
}

/// Records of one type may stand in several libraries: the name tells.
inline bool isSameType(const TypeRecord& a, const TypeRecord& b) {
  return &a == &b || std::strcmp(a.name, b.name) == 0;
}

/// Raises a range error for an object of another type.
inline void requireType(const TypeRecord& expected, const TypeRecord& found) {
  if (!isSameType(expected, found)) throwTypeException(expected.name, found.name);
}

/// A value: a copy of its own, or one that lives elsewhere.
template <class T>
class GenericIf_ final : public GenericIf {
 public:
  GenericIf_(T value, bool constant)
      : GenericIf(constant), own_(std::move(value)), value_(&*own_) {}
  GenericIf_(T* value, bool constant) : GenericIf(constant), value_(value) {}

  const TypeRecord& type() const override { return typeOf<T>(); }
  void* voidPtrIs(const TypeRecord& expected) override {
    requireType(expected, type());
    return value_;
  }
  std::uint32_t hash() const override {
    if constexpr (Attributed<T> && requires { std::uint32_t{value_->hash()}; }) {
      return value_->hash();
    } else {
      throwUnhashableException(type().name);
    }
  }
  String strRep() const override { return valueToStrep(*value_); }

 private:
  std::optional<T> own_;
  T* value_;
};

/// A handle to an entity, or to none.
class LUMO_EXPORT GenericIfPtrInterface final : public GenericIf {
 public:
  GenericIfPtrInterface(const TypeRecord& type, Ptr<const PtrInterface> entity, void* object,
                        bool constant)
      : GenericIf(constant), type_(type), entity_(std::move(entity)), object_(object) {}
  ~GenericIfPtrInterface() override;

  const TypeRecord& type() const override { return type_; }
  void* voidPtrIs(const TypeRecord& expected) override;
  std::uint32_t hash() const override;
  String strRep() const override;

 private:
  const TypeRecord& type_;
  Ptr<const PtrInterface> entity_;
  void* object_; ///< the entity as its own type
};

/// A handle as an object that is known by its type's name.
template <class T>
GenericPtr wrapEntity(const Ptr<T>& entity, bool constant) {
  return GenericPtr(new GenericIfPtrInterface(
      typeOf<T>(), entity, const_cast<void*>(static_cast<const void*>(entity.ptr())), constant));
}

/// A copy of a value, or a handle; a handle to a const entity gives a constant result.
template <class T>
GenericPtr wrapAttrValue(T value, bool constant = false) {
  if constexpr (isHandle<T>) {
    return wrapEntity(value, constant || std::is_const_v<typename T::Element>);
  } else {
    return GenericPtr(new GenericIf_<T>(std::move(value), constant));
  }
}

/// A key in a collection.
template <class T>
GenericPtr wrapAttrIndex(const T& key) {
  return wrapAttrValue(key);
}

/// The value inside; raises a range error when there is none or it is of another type, and for a
/// handle when it is constant and must not be. No value at all is a null handle.
template <class T>
decltype(auto) unwrap(const GenericPtr& value) {
  if constexpr (isHandle<T>) {
    using Entity = typename T::Element;
    if (!value) return T();
    void* const object = value->voidPtrIs(typeOf<T>());
    if (object && !std::is_const_v<Entity> && value->constant()) {
      throwConstantException(typeOf<T>().name);
    }
    return T(static_cast<Entity*>(object));
  } else {
    if (!value) throwTypeException(typeOf<T>().name, "None");
    return *static_cast<const T*>(value->voidPtrIs(typeOf<T>()));
  }
}

} // namespace Lumo
