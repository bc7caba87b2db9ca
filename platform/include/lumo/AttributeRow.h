// The row of the attribute table of each kind of attribute, made from a pointer to the member.
#pragma once

#include "lumo/Arguments.h"
#include "lumo/HashMap2018.h"
#include "lumo/RbTreeMap.h"

namespace Lumo {

/// The field behind a pointer to member, and the class that declares it.
template <class MemberPointer>
struct MemberOf;
/// The pair for a pointer to a field.
template <class Class, class Field>
struct MemberOf<Field Class::*> {
  using Owner = Class;
  using Type = Field;
};

template <auto field>
using OwnerOf = typename MemberOf<decltype(field)>::Owner;
template <auto field>
using FieldOf = typename MemberOf<decltype(field)>::Type;

/// Says of a handle given to a constructor that null has a meaning.
struct OrNull {};
/// The value to say it with.
inline constexpr OrNull orNull;

/// The row of an attribute that is one value, of a field of its class.
template <auto field>
constexpr AttributeRecord scalarRow(const char* name, AttributeKind kind) {
  using Owner = OwnerOf<field>;
  using Field = FieldOf<field>;
  AttributeRecord row;
  row.name = name;
  row.owner = &typeOf<Owner>();
  row.kind = kind;
  row.valueType = &typeOf<Field>();
  row.read = [](const void* object) {
    return wrapAttrValue(static_cast<const Owner*>(object)->*field);
  };
  if (kind != AttributeKind::constructorArgument) {
    row.write = [](void* object, const GenericPtr& value) {
      static_cast<Owner*>(object)->*field = unwrap<Field>(value);
    };
  }
  row.strep = [](const void* object) {
    return valueToStrep(static_cast<const Owner*>(object)->*field);
  };
  row.readStrep = [](void* object, StringIterator& at, const StringIterator& end) {
    static_cast<Owner*>(object)->*field = sequenceToValue<Field>(at, end);
  };
  return row;
}

template <auto field>
constexpr AttributeRecord scalarRow(const char* name, AttributeKind kind, OrNull) {
  AttributeRecord row = scalarRow<field>(name, kind);
  row.mayBeNull = true;
  return row;
}

/// A member that was looked up, or the default value of a missing one.
template <class Value, class Key>
const Value& memberOrDefault(const Value* member) {
  static const Value absent{};
  return member ? *member : absent;
}

/// A walk over the collection behind `field`.
template <auto field>
class CollectionIterator final : public GenericIterator {
  using Map = FieldOf<field>;
  using Value = typename Map::ValueType;
  using Key = typename Map::KeyType;

  static const CollectionIterator& of(const GenericIterator& walk) {
    return static_cast<const CollectionIterator&>(walk);
  }
  static CollectionIterator& of(GenericIterator& walk) {
    return static_cast<CollectionIterator&>(walk);
  }

 public:
  CollectionIterator(Map& map, bool constant, const GenericPtr* key)
      : map_(map),
        cursor_(key ? map.cursor(unwrap<Key>(*key)) : map.cursor()),
        constant_(constant) {}

  /// What a caller without the type moves it by.
  static constexpr IteratorFunctions functions = {
      [](const GenericIterator& walk) {
        const auto& self = of(walk);
        if (!self.cursor_) return GenericPtr();
        return wrapAttrValue(memberOrDefault<Value, Key>(self.cursor_.value()));
      },
      [](const GenericIterator& walk) {
        return of(walk).cursor_ ? wrapAttrIndex(of(walk).cursor_.key()) : GenericPtr();
      },
      [](const GenericIterator& walk) { return static_cast<bool>(of(walk).cursor_); },
      [](GenericIterator& walk) {
        if (of(walk).cursor_) of(walk).cursor_.next();
      },
      [](GenericIterator& walk) {
        CollectionIterator& self = of(walk);
        if (self.constant_) throwConstantException(typeOf<OwnerOf<field>>().name);
        if (self.cursor_) self.map_.erase(self.cursor_);
      }};

 private:
  Map& map_;
  typename Map::Cursor cursor_;
  bool constant_;
};

/// Inserts into a collection without a mutator of its own; no handle in it is null.
template <auto field>
struct InsertMember {
  using Map = FieldOf<field>;
  void operator()(OwnerOf<field>& object, const typename Map::KeyType& key,
                  const typename Map::ValueType& value) const {
    if constexpr (isHandle<typename Map::ValueType>) {
      if (!value) throw RangeException("a collection of entities takes no null");
    }
    (object.*field).insertOrAssign(key, value);
  }
};

/// `Insert` is the class's own mutator, so that access by name refuses what it refuses.
template <auto field, class Insert>
constexpr AttributeRecord collectionRow(const char* name, AttributeKind kind,
                                        const char* internalKey, Insert) {
  using Owner = OwnerOf<field>;
  using Key = typename FieldOf<field>::KeyType;
  using Value = typename FieldOf<field>::ValueType;
  AttributeRecord row;
  row.name = name;
  row.owner = &typeOf<Owner>();
  row.kind = kind;
  row.valueType = &typeOf<Value>();
  row.keyType = &typeOf<Key>();
  row.internalKey = internalKey;
  row.readMember = [](const void* object, const GenericPtr& key) {
    const Value* const member = (static_cast<const Owner*>(object)->*field).find(unwrap<Key>(key));
    return wrapAttrValue(memberOrDefault<Value, Key>(member));
  };
  row.writeMember = [](void* object, const GenericPtr& key, const GenericPtr& value) {
    Insert()(*static_cast<Owner*>(object), unwrap<Key>(key), unwrap<Value>(value));
  };
  row.deleteMember = [](void* object, const GenericPtr& key) {
    Value old{};
    (static_cast<Owner*>(object)->*field).erase(unwrap<Key>(key), &old);
    return wrapAttrValue(std::move(old));
  };
  row.hasMember = [](const void* object, const GenericPtr& key) {
    return (static_cast<const Owner*>(object)->*field).find(unwrap<Key>(key)) != nullptr;
  };
  row.members = [](const void* object) {
    return (static_cast<const Owner*>(object)->*field).size();
  };
  row.secondCount = [](const void* object) {
    return (static_cast<const Owner*>(object)->*field).changes();
  };
  row.iterator = [](void* object, bool constant, const GenericPtr* key) {
    return Ptr<GenericIterator>(
        new CollectionIterator<field>(static_cast<Owner*>(object)->*field, constant, key));
  };
  row.iteratorFunctions = &CollectionIterator<field>::functions;
  return row;
}

/// The row of a method, with the names of its arguments in their order.
template <auto method, class... Names>
constexpr AttributeRecord methodRow(const char* name, Names... argumentNames) {
  using Call = CallableOf<decltype(method)>;
  static_assert(sizeof...(Names) == Call::types.size() &&
                sizeof...(Names) < AttributeRecord::maxArguments);
  AttributeRecord row;
  row.name = name;
  row.owner = &typeOf<typename Call::Owner>();
  row.kind = AttributeKind::method;
  row.valueType = &Call::result;
  row.isConstant = Call::isConstant;
  std::size_t at = 0;
  ((row.arguments[at] = {argumentNames, Call::types[at]}, ++at), ...);
  row.call = [](void* object, const ArgumentRecord* table, ArgumentSpan arguments) {
    return Call::template unwrapFunctionArgs<method>(static_cast<typename Call::Owner*>(object),
                                                     table, arguments);
  };
  return row;
}

/// A computed attribute is read through the accessor of its name.
template <class Owner, class Value, class Read>
constexpr AttributeRecord computedRow(const char* name, Read) {
  AttributeRecord row;
  row.name = name;
  row.owner = &typeOf<Owner>();
  row.kind = AttributeKind::computed;
  row.valueType = &typeOf<Value>();
  row.read = [](const void* object) {
    return wrapAttrValue<Value>(Read()(*static_cast<const Owner*>(object)));
  };
  return row;
}

} // namespace Lumo
