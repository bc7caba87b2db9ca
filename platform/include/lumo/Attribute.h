// Declaring a type's attributes, one line each:
//
//   class CachedVia {
//     LUMO_TYPE(CachedVia, "Rova::CachedVia")
//     LUMO_ATTR(Kesh::IpGenAddr, hop)                    // hop(), hopIs(v)
//     LUMO_COMPUTED(Tunnel::TunnelTable::TunnelId, tunnelId) // tunnelId() written by hand
//     LUMO_END
//     LUMO_VALUE(CachedVia)                              // operator!, <<, reading of strep text
//   };
//
// A line makes the attribute's field `hop_`, its accessors, and its row of the attribute table,
// from which access by name and strep text follow. Rows stand in the order of the lines: each is an
// overload chosen by its line number, so one line may declare one attribute only. LUMO_DEFINE_TYPE
// in one source file makes the table.
//
// A collection x has x(key), which gives the default value for a missing key, xIs, newX, xDel of a
// key or of the member that a walk stands on, xDelAll, xNotify, xs() for its size, and xMap() for
// walks.
#pragma once

#include "lumo/TypeRecordOf.h"

#include <ostream>

/// Opens the attribute declarations of a class.
#define LUMO_TYPE(Self, text)                                                                      \
 public:                                                                                           \
  using LumoSelf = Self;                                                                           \
  static constexpr const char* lumoName = text;                                                    \
  static const ::Lumo::TypeRecord lumoType;                                                        \
  static constexpr int lumoBegin = __LINE__;

/// Closes them; what follows is public.
#define LUMO_END                                                                                   \
 public:                                                                                           \
  static constexpr int lumoEnd = __LINE__;

/// What every value with a default constructor has: two are equal if all their fields are,
/// `operator!` is true of what equals the default, `operator<<` writes the strep text, and the
/// constructor reads it.
#define LUMO_VALUE(Self)                                                                           \
 public:                                                                                           \
  friend bool operator==(const Self&, const Self&) = default;                                      \
  LUMO_VALUE_COMPARED(Self)

/// The same for a value with an operator== of its own.
#define LUMO_VALUE_COMPARED(Self)                                                                  \
 public:                                                                                           \
  Self(::Lumo::StringIterator& at, const ::Lumo::StringIterator& end) : Self() {                   \
    ::Lumo::readStrep(lumoType, this, at, end);                                                    \
  }                                                                                                \
  bool operator!() const { return *this == Self(); }                                               \
  friend std::ostream& operator<<(std::ostream& out, const Self& value) {                          \
    return out << ::Lumo::valueToStrep(value);                                                     \
  }

/// Between LUMO_TYPE and LUMO_END: the base class whose attributes the type has too.
#define LUMO_BASE(Base)                                                                            \
 public:                                                                                           \
  using LumoBase = Base;

/// In one source file, outside every function.
#define LUMO_DEFINE_TYPE(Type)                                                                     \
  constinit const ::Lumo::TypeRecord Type::lumoType = ::Lumo::makeTypeRecord<Type>()

// A row is a template so that only the table instantiates it, not every file that sees the class.
#define LUMO_ROW(row)                                                                              \
  template <class Self = LumoSelf>                                                                 \
  static constexpr ::Lumo::AttributeRecord lumoRow(::Lumo::Line<__LINE__>) {                       \
    return row;                                                                                    \
  }

/// The row of an attribute that only some instances of a class template have.
#define LUMO_ROW_IF(condition, row)                                                                \
  template <class Self = LumoSelf>                                                                 \
  static constexpr ::Lumo::AttributeRecord lumoRow(::Lumo::Line<__LINE__>) requires(condition) {   \
    return row;                                                                                    \
  }

#define LUMO_READ(Type, x)                                                                         \
 public:                                                                                           \
  const Type& x() const { return x##_; }

#define LUMO_FIELD(Type, x)                                                                        \
 protected:                                                                                        \
  Type x##_{};

/// Names the type of the constructor argument that stands on this line, and its field.
#define LUMO_ARGUMENT(Type, field)                                                                 \
  static ::Lumo::TypeList<Type> lumoArgument(::Lumo::Line<__LINE__>);                              \
  template <class Self>                                                                            \
  static auto& lumoField(Self& self, ::Lumo::Line<__LINE__>) {                                     \
    return self.field;                                                                             \
  }

/// A constructor argument: readable, fixed for the object's life. A third argument `Lumo::orNull`
/// says of a handle that its null has a meaning.
#define LUMO_CTOR(Type, x, ...)                                                                    \
  LUMO_READ(Type, x)                                                                               \
  LUMO_ARGUMENT(Type, x##_)                                                                        \
  LUMO_ROW((::Lumo::scalarRow<&Self::x##_>(                                                        \
      #x, ::Lumo::AttributeKind::constructorArgument __VA_OPT__(, ) __VA_ARGS__)))                 \
  LUMO_FIELD(Type, x)

/// A constructor argument that can be changed later.
#define LUMO_CTOR_WRITABLE(Type, x, ...)                                                           \
  LUMO_READ(Type, x)                                                                               \
  LUMO_ARGUMENT(Type, x##_)                                                                        \
  void x##Is(Type value) { x##_ = std::move(value); }                                              \
  LUMO_ROW((::Lumo::scalarRow<&Self::x##_>(                                                        \
      #x, ::Lumo::AttributeKind::writableConstructorArgument __VA_OPT__(, ) __VA_ARGS__)))         \
  LUMO_FIELD(Type, x)

/// A constructor argument that is a public field of the base class. The rows of a base come before
/// those of the class derived from it.
#define LUMO_INHERITED(Type, x)                                                                    \
 public:                                                                                           \
  LUMO_ARGUMENT(Type, x)                                                                           \
  LUMO_ROW((::Lumo::scalarRow<&Self::x>(#x, ::Lumo::AttributeKind::constructorArgument)))

/// A plain attribute that is a public field.
#define LUMO_PUBLIC(x) LUMO_ROW((::Lumo::scalarRow<&Self::x>(#x, ::Lumo::AttributeKind::plain)))

/// An attribute that is a public field and never changes.
#define LUMO_PUBLIC_CONST(Type, x)                                                                 \
  LUMO_ROW((::Lumo::computedRow<Self, Type>(#x, [](const Self& self) { return self.x; })))

/// A hashed collection that is a public field.
#define LUMO_PUBLIC_HASHED(x)                                                                      \
  LUMO_ROW((::Lumo::collectionRow<&Self::x>(#x, ::Lumo::AttributeKind::hashed, nullptr,            \
                                            ::Lumo::InsertMember<&Self::x>())))

/// A constructor argument that the class template has only where `condition` holds.
#define LUMO_CTOR_IF(condition, Type, x)                                                           \
 public:                                                                                           \
  const Type& x() const requires(condition) { return x##_; }                                       \
  static ::Lumo::TypeList<Type> lumoArgument(::Lumo::Line<__LINE__>) requires(condition);          \
  template <class Self>                                                                            \
  static auto& lumoField(Self& self, ::Lumo::Line<__LINE__>) requires(condition) {                 \
    return self.x##_;                                                                              \
  }                                                                                                \
  LUMO_ROW_IF(condition,                                                                           \
              (::Lumo::scalarRow<&Self::x##_>(#x, ::Lumo::AttributeKind::constructorArgument)))    \
  LUMO_FIELD(Type, x)

/// A readable and writable attribute that starts at the default of its type.
#define LUMO_ATTR(Type, x)                                                                         \
  LUMO_READ(Type, x)                                                                               \
  void x##Is(Type value) { x##_ = std::move(value); }                                              \
  LUMO_ROW((::Lumo::scalarRow<&Self::x##_>(#x, ::Lumo::AttributeKind::plain)))                     \
  LUMO_FIELD(Type, x)

/// A plain attribute that the class template has only where `condition` holds.
#define LUMO_ATTR_IF(condition, Type, x)                                                           \
 public:                                                                                           \
  const Type& x() const requires(condition) { return x##_; }                                       \
  void x##Is(Type value) requires(condition) { x##_ = std::move(value); }                          \
  LUMO_ROW_IF(condition, (::Lumo::scalarRow<&Self::x##_>(#x, ::Lumo::AttributeKind::plain)))       \
  LUMO_FIELD(Type, x)

/// An attribute without a field; its accessor x() is written by hand.
#define LUMO_COMPUTED(Type, x)                                                                     \
 public:                                                                                           \
  LUMO_ROW((::Lumo::computedRow<Self, Type>(#x, [](const Self& self) { return self.x(); })))

/// A method that can be called by name; the names of its arguments follow as texts.
#define LUMO_METHOD(x, ...)                                                                        \
 public:                                                                                           \
  LUMO_ROW((::Lumo::methodRow<&Self::x>(#x __VA_OPT__(, ) __VA_ARGS__)))

/// A method that the class template has only where `condition` holds.
#define LUMO_METHOD_IF(condition, x, ...)                                                          \
 public:                                                                                           \
  LUMO_ROW_IF(condition, (::Lumo::methodRow<&Self::x>(#x __VA_OPT__(, ) __VA_ARGS__)))

#define LUMO_COLLECTION(Family, tag, Key, Value, x, X, internal, insert)                           \
 public:                                                                                           \
  const Value& x(const Key& key) const {                                                           \
    return ::Lumo::memberOrDefault<Value, Key>(x##_.find(key));                                    \
  }                                                                                                \
  std::size_t x##s() const { return x##_.size(); }                                                 \
  const Family<Key, Value>& x##Map() const { return x##_; }                                        \
  Value& new##X(const Key& key, Value value = {}) {                                                \
    return x##_.insertOrAssign(key, std::move(value));                                             \
  }                                                                                                \
  Value x##Del(const Key& key) {                                                                   \
    Value old{};                                                                                   \
    x##_.erase(key, &old);                                                                         \
    return old;                                                                                    \
  }                                                                                                \
  void x##Del(const typename Family<Key, Value>::Cursor& at) { x##_.erase(at); }                   \
  void x##DelAll() {                                                                               \
    for (auto at = x##_.cursor(); at; at.next()) x##Del(at);                                       \
  }                                                                                                \
  void x##Notify(const Key&) {}                                                                    \
  LUMO_ROW((::Lumo::collectionRow<&Self::x##_>(                                                    \
      #x, ::Lumo::AttributeKind::tag, internal,                                                    \
      [](Self& self, const Key& key, const Value& value) { insert; })))                            \
 protected:                                                                                        \
  Family<Key, Value> x##_;

#define LUMO_INSERT(Key, Value, x)                                                                 \
 public:                                                                                           \
  void x##Is(const Key& key, Value value) { x##_.insertOrAssign(key, std::move(value)); }

/// A collection walked in the order of its keys.
#define LUMO_ORDERED(Key, Value, x, X)                                                             \
  LUMO_INSERT(Key, Value, x)                                                                       \
  LUMO_COLLECTION(::Lumo::RbTreeMap, ordered, Key, Value, x, X, nullptr, self.x##Is(key, value))

/// A collection without an order.
#define LUMO_HASHED(Key, Value, x, X)                                                              \
  LUMO_INSERT(Key, Value, x)                                                                       \
  LUMO_COLLECTION(::Lumo::HashMap2018, hashed, Key, Value, x, X, nullptr, self.x##Is(key, value))

/// A hashed collection of values, keyed by the value's attribute `internal`.
#define LUMO_HASHED_VALUES(Key, Value, x, X, internal)                                             \
 public:                                                                                           \
  void x##Is(Value value) {                                                                        \
    const Key key = value.internal();                                                              \
    x##_.insertOrAssign(key, std::move(value));                                                    \
  }                                                                                                \
  LUMO_COLLECTION(::Lumo::HashMap2018, hashed, Key, Value, x, X, #internal,                        \
                  (static_cast<void>(key), self.x##Is(value)))

/// Inserts an entity under a key of its own. A null entity is refused; the message's closing quote
/// has no opening one, and tools match it as it is.
#define LUMO_ENTITY_INSERT(Key, Entity, x, ownKey)                                                 \
 public:                                                                                           \
  void x##Is(::Lumo::Ptr<Entity> entity) {                                                         \
    if (!entity) {                                                                                 \
      throw ::Lumo::RangeException("null _" #x " parameter to mutator for " +                      \
                                   std::string(lumoName) + "::" #x " not allowed\"");              \
    }                                                                                              \
    const Key key = entity->ownKey;                                                                \
    x##_.insertOrAssign(key, std::move(entity));                                                   \
  }

/// An ordered collection of the platform's entities, keyed by their public field `internal`.
#define LUMO_ORDERED_ENTITIES(Key, Entity, x, X, internal)                                         \
  LUMO_ENTITY_INSERT(Key, Entity, x, internal)                                                     \
  LUMO_COLLECTION(::Lumo::RbTreeMap, ordered, Key, ::Lumo::Ptr<Entity>, x, X, #internal,           \
                  (static_cast<void>(key), self.x##Is(value)))

/// A hashed collection of entities, keyed by the entity's attribute `internal`.
#define LUMO_HASHED_ENTITIES(Key, Entity, x, X, internal)                                          \
  LUMO_ENTITY_INSERT(Key, Entity, x, internal())                                                   \
  LUMO_COLLECTION(::Lumo::HashMap2018, hashed, Key, ::Lumo::Ptr<Entity>, x, X, #internal,          \
                  (static_cast<void>(key), self.x##Is(value)))
