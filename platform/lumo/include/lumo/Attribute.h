// Declaring a type's attributes, one line each:
//
//   class CachedVia {
//     LUMO_TYPE(CachedVia, "Rova::CachedVia")
//     LUMO_ATTR(Kesh::IpGenAddr, hop)                    // hop(), hopIs(v)
//     LUMO_COMPUTED(Tunnel::TunnelTable::TunnelId, tunnelId) // tunnelId() written by hand
//     LUMO_END
//   };
//
// A line makes the attribute's field `hop_`, its accessors, and its row of the attribute table,
// from which access by name and strep text follow. Rows stand in the order of the lines: each is an
// overload chosen by its line number, so one line may declare one attribute only. LUMO_DEFINE_TYPE
// in one source file makes the table.
//
// A collection x has x(key), which gives the default value for a missing key, xIs, newX, xDel,
// xDelAll, xNotify, xs() for its size, and xMap() for walks.
#pragma once

#include "lumo/HashMap2018.h"
#include "lumo/RbTreeMap.h"
#include "lumo/Type.h"

#include <type_traits>

namespace Lumo {

/// Names a line of a class declaration.
template <int number>
struct Line {};

/// The field behind a pointer to member, and the class that it belongs to.
template <class MemberPointer>
struct MemberOf;
template <class Class, class Field>
struct MemberOf<Field Class::*> {
  using Owner = Class;
  using Type = Field;
};

template <auto field>
using OwnerOf = typename MemberOf<decltype(field)>::Owner;
template <auto field>
using FieldOf = typename MemberOf<decltype(field)>::Type;

template <auto field>
constexpr AttributeRecord scalarRow(const char* name, AttributeKind kind) {
  using Owner = OwnerOf<field>;
  using Field = FieldOf<field>;
  AttributeRecord row;
  row.name = name;
  row.kind = kind;
  row.valueType = TypeName<Field>::value;
  row.read = [](const void* object) {
    return wrapAttrValue(static_cast<const Owner*>(object)->*field);
  };
  if (kind != AttributeKind::constructorArgument) {
    row.write = [](void* object, const Ptr<GenericIf>& value) {
      static_cast<Owner*>(object)->*field = unwrap<Field>(value);
    };
  }
  row.strep = [](const void* object) {
    return valueToStrep(static_cast<const Owner*>(object)->*field);
  };
  return row;
}

template <class Value, class Key>
const Value& memberOrDefault(const Value* member) {
  static const Value absent{};
  return member ? *member : absent;
}

/// `Insert` is the class's own mutator, so that access by name refuses what it refuses.
template <auto field, class Insert>
constexpr AttributeRecord collectionRow(const char* name, AttributeKind kind,
                                        const char* internalKey, Insert) {
  using Owner = OwnerOf<field>;
  using Key = typename FieldOf<field>::KeyType;
  using Value = typename FieldOf<field>::ValueType;
  AttributeRecord row;
  row.name = name;
  row.kind = kind;
  row.valueType = TypeName<Value>::value;
  row.keyType = TypeName<Key>::value;
  row.internalKey = internalKey;
  row.readMember = [](const void* object, const Ptr<GenericIf>& key) {
    const Value* const member = (static_cast<const Owner*>(object)->*field).find(unwrap<Key>(key));
    return wrapAttrValue(memberOrDefault<Value, Key>(member));
  };
  row.writeMember = [](void* object, const Ptr<GenericIf>& key, const Ptr<GenericIf>& value) {
    Insert()(*static_cast<Owner*>(object), unwrap<Key>(key), unwrap<Value>(value));
  };
  row.deleteMember = [](void* object, const Ptr<GenericIf>& key) {
    Value old{};
    (static_cast<Owner*>(object)->*field).erase(unwrap<Key>(key), &old);
    return wrapAttrValue(std::move(old));
  };
  row.hasMember = [](const void* object, const Ptr<GenericIf>& key) {
    return (static_cast<const Owner*>(object)->*field).find(unwrap<Key>(key)) != nullptr;
  };
  row.members = [](const void* object) {
    return (static_cast<const Owner*>(object)->*field).size();
  };
  return row;
}

/// A method of any signature, called with generic arguments.
template <class Owner, class Result, class... Args>
struct Callable {
  static constexpr const char* result = TypeName<std::remove_cvref_t<Result>>::value;
  static constexpr std::array<const char*, sizeof...(Args)> types = {
      TypeName<std::remove_cvref_t<Args>>::value...};

  template <auto method>
  static Ptr<GenericIf> call(void* object, GenericArguments arguments) {
    if (arguments.size() != sizeof...(Args)) {
      throw RangeException("expected " + std::to_string(sizeof...(Args)) + " arguments, found " +
                           std::to_string(arguments.size()));
    }
    return invoke<method>(static_cast<Owner*>(object), arguments,
                          std::index_sequence_for<Args...>());
  }

 private:
  template <auto method, std::size_t... at>
  static Ptr<GenericIf> invoke(Owner* object, [[maybe_unused]] GenericArguments arguments,
                               std::index_sequence<at...>) {
    if constexpr (std::is_void_v<Result>) {
      (object->*method)(unwrap<std::remove_cvref_t<Args>>(arguments[at])...);
      return {};
    } else {
      return wrapAttrValue((object->*method)(unwrap<std::remove_cvref_t<Args>>(arguments[at])...));
    }
  }
};

template <class Method>
struct CallableOf;
template <class Owner, class Result, class... Args>
struct CallableOf<Result (Owner::*)(Args...)> : Callable<Owner, Result, Args...> {};
template <class Owner, class Result, class... Args>
struct CallableOf<Result (Owner::*)(Args...) const> : Callable<Owner, Result, Args...> {};

template <auto method, class... Names>
constexpr AttributeRecord methodRow(const char* name, Names... argumentNames) {
  using Call = CallableOf<decltype(method)>;
  static_assert(sizeof...(Names) == Call::types.size() &&
                sizeof...(Names) < AttributeRecord::maxArguments);
  AttributeRecord row;
  row.name = name;
  row.kind = AttributeKind::method;
  row.valueType = Call::result;
  std::size_t at = 0;
  ((row.arguments[at] = {argumentNames, Call::types[at]}, ++at), ...);
  row.call = &Call::template call<method>;
  return row;
}

/// A computed attribute is read through the accessor of its name.
template <class Owner, class Value, class Read>
constexpr AttributeRecord computedRow(const char* name, Read) {
  AttributeRecord row;
  row.name = name;
  row.kind = AttributeKind::computed;
  row.valueType = TypeName<Value>::value;
  row.read = [](const void* object) {
    return wrapAttrValue(Read()(*static_cast<const Owner*>(object)));
  };
  return row;
}

/// The rows of `T` in the order of their lines, indexes filled in. Indexes begin anew, one level
/// higher, behind each LUMO_LEVEL.
template <class T, std::uint32_t firstIndex>
constexpr auto makeAttributeTable() {
  constexpr auto hasRow = []<int line>(Line<line> at) {
    return requires { T::lumoRow(at); };
  };
  constexpr int lines = T::lumoEnd - T::lumoBegin;
  constexpr auto count = [=]<int... at>(std::integer_sequence<int, at...>) {
    return (std::size_t{hasRow(Line<T::lumoBegin + at>())} + ... + 0);
  }
  (std::make_integer_sequence<int, lines>());
  std::array<AttributeRecord, count> table{};
  std::size_t filled = 0;
  std::uint32_t levelIndex = firstIndex;
  std::uint32_t index = levelIndex;
  const auto fill = [&]<int line>(Line<line> at) {
    if constexpr (requires { T::lumoRow(at); }) {
      table[filled] = T::lumoRow(at);
      table[filled++].index = index++;
    } else if constexpr (requires { T::lumoLevel(at); }) {
      index = levelIndex += attributeIndexLevel;
    }
  };
  [&]<int... at>(std::integer_sequence<int, at...>) { (fill(Line<T::lumoBegin + at>()), ...); }
  (std::make_integer_sequence<int, lines>());
  return table;
}

template <class T>
inline constexpr std::uint32_t
    firstIndexOf = firstAttributeIndex +
                   (std::is_base_of_v<PtrInterface, T> ? attributeIndexLevel : 0);

template <class T>
inline constexpr auto attributeTable = makeAttributeTable<T, firstIndexOf<T>>();

template <class T>
constexpr TypeRecord makeTypeRecord() {
  return {TypeName<T>::value, std::is_base_of_v<PtrInterface, T>, attributeTable<T>};
}

} // namespace Lumo

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

/// In one source file, outside every function.
#define LUMO_DEFINE_TYPE(Type)                                                                     \
  constinit const ::Lumo::TypeRecord Type::lumoType = ::Lumo::makeTypeRecord<Type>()

#define LUMO_ROW(row)                                                                              \
  static constexpr ::Lumo::AttributeRecord lumoRow(::Lumo::Line<__LINE__>) { return row; }

/// The row of an attribute that only some instances of a class template have.
#define LUMO_ROW_IF(condition, row)                                                                \
  static constexpr ::Lumo::AttributeRecord lumoRow(::Lumo::Line<__LINE__>) requires(condition) {   \
    if constexpr (condition) return row; /* clang looks at it even where the row is not */         \
    return {};                                                                                     \
  }

#define LUMO_READ(Type, x)                                                                         \
 public:                                                                                           \
  const Type& x() const { return x##_; }

#define LUMO_FIELD(Type, x)                                                                        \
 protected:                                                                                        \
  Type x##_{};

/// A constructor argument: readable, fixed for the object's life.
#define LUMO_CTOR(Type, x)                                                                         \
  LUMO_READ(Type, x)                                                                               \
  LUMO_ROW((::Lumo::scalarRow<&LumoSelf::x##_>(#x, ::Lumo::AttributeKind::constructorArgument)))   \
  LUMO_FIELD(Type, x)

/// A constructor argument that can be changed later.
#define LUMO_CTOR_WRITABLE(Type, x)                                                                \
  LUMO_READ(Type, x)                                                                               \
  void x##Is(Type value) { x##_ = std::move(value); }                                              \
  LUMO_ROW((                                                                                       \
      ::Lumo::scalarRow<&LumoSelf::x##_>(#x, ::Lumo::AttributeKind::writableConstructorArgument))) \
  LUMO_FIELD(Type, x)

/// A constructor argument that is a public field of the base class, which has no attribute lines.
#define LUMO_INHERITED(x)                                                                          \
 public:                                                                                           \
  LUMO_ROW((::Lumo::scalarRow<&LumoSelf::x>(#x, ::Lumo::AttributeKind::constructorArgument)))

/// Between the attributes of one class and those of the class derived from it.
#define LUMO_LEVEL                                                                                 \
 public:                                                                                           \
  static constexpr void lumoLevel(::Lumo::Line<__LINE__>) {}

/// A constructor argument that the class template has only where `condition` holds.
#define LUMO_CTOR_IF(condition, Type, x)                                                           \
 public:                                                                                           \
  const Type& x() const requires(condition) { return x##_; }                                       \
  LUMO_ROW_IF(condition, (::Lumo::scalarRow<&LumoSelf::x##_>(                                      \
                             #x, ::Lumo::AttributeKind::constructorArgument)))                     \
  LUMO_FIELD(Type, x)

/// A readable and writable attribute that starts at the default of its type.
#define LUMO_ATTR(Type, x)                                                                         \
  LUMO_READ(Type, x)                                                                               \
  void x##Is(Type value) { x##_ = std::move(value); }                                              \
  LUMO_ROW((::Lumo::scalarRow<&LumoSelf::x##_>(#x, ::Lumo::AttributeKind::plain)))                 \
  LUMO_FIELD(Type, x)

/// A plain attribute that the class template has only where `condition` holds.
#define LUMO_ATTR_IF(condition, Type, x)                                                           \
 public:                                                                                           \
  const Type& x() const requires(condition) { return x##_; }                                       \
  void x##Is(Type value) requires(condition) { x##_ = std::move(value); }                          \
  LUMO_ROW_IF(condition, (::Lumo::scalarRow<&LumoSelf::x##_>(#x, ::Lumo::AttributeKind::plain)))   \
  LUMO_FIELD(Type, x)

/// An attribute without a field; its accessor x() is written by hand.
#define LUMO_COMPUTED(Type, x)                                                                     \
 public:                                                                                           \
  LUMO_ROW((::Lumo::computedRow<LumoSelf, Type>(#x, [](const LumoSelf& self) { return self.x(); })))

/// A method that can be called by name; the names of its arguments follow as texts.
#define LUMO_METHOD(x, ...)                                                                        \
 public:                                                                                           \
  LUMO_ROW((::Lumo::methodRow<&LumoSelf::x>(#x __VA_OPT__(, ) __VA_ARGS__)))

/// A method that the class template has only where `condition` holds.
#define LUMO_METHOD_IF(condition, x, ...)                                                          \
 public:                                                                                           \
  LUMO_ROW_IF(condition, (::Lumo::methodRow<&LumoSelf::x>(#x __VA_OPT__(, ) __VA_ARGS__)))

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
  void x##DelAll() {                                                                               \
    for (auto at = x##_.cursor(); at; at.next()) x##Del(at.key());                                 \
  }                                                                                                \
  void x##Notify(const Key&) {}                                                                    \
  LUMO_ROW((::Lumo::collectionRow<&LumoSelf::x##_>(                                                \
      #x, ::Lumo::AttributeKind::tag, internal,                                                    \
      [](LumoSelf& self, const Key& key, const Value& value) { insert; })))                        \
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
