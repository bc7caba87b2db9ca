// The record of a class, made from its attribute lines when it is compiled.
#pragma once

#include "lumo/AttributeRow.h"

#include <array>
#include <cstdint>
#include <tuple>

namespace Lumo {

/// Names a line of a class declaration.
template <int number>
struct Line {};

/// Calls `visit` with the line of each row of `T`, in their order.
template <class T, class Visit>
constexpr void forEachRow(Visit visit) {
  const auto visitLine = [&]<int number>(Line<number> line) {
    if constexpr (requires { T::lumoRow(line); }) visit(line);
  };
  [&]<int... at>(std::integer_sequence<int, at...>) { (visitLine(Line<T::lumoBegin + at>()), ...); }
  (std::make_integer_sequence<int, T::lumoEnd - T::lumoBegin>());
}

/// The index of a type's first attribute: entities leave a level to their base.
template <class T>
inline constexpr std::uint32_t
    firstIndexOf = firstAttributeIndex +
                   (std::is_base_of_v<PtrInterface, T> ? attributeIndexLevel : 0);

/// The rows of `T` in the order of their lines, indexes filled in: they begin anew, one level
/// higher, where a base's rows end and those of the class derived from it begin.
template <class T>
constexpr auto makeAttributeTable() {
  constexpr std::size_t count = [] {
    std::size_t rows = 0;
    forEachRow<T>([&](auto) { ++rows; });
    return rows;
  }();
  std::array<AttributeRecord, count> table{};
  std::size_t filled = 0;
  std::uint32_t levelIndex = firstIndexOf<T>;
  std::uint32_t index = levelIndex;
  forEachRow<T>([&](auto line) {
    AttributeRecord& row = table[filled];
    row = T::lumoRow(line);
    if (filled > 0 && table[filled - 1].owner != row.owner) {
      index = levelIndex += attributeIndexLevel;
    }
    row.index = index++;
    ++filled;
  });
  return table;
}

/// The rows of a type, made once.
template <class T>
inline constexpr auto attributeTable = makeAttributeTable<T>();

/// The types of the constructor's arguments: those of the rows that are marked as such.
template <class T>
constexpr auto constructorTypes() {
  const auto typeAt = []<int number>(Line<number> line) {
    if constexpr (requires { T::lumoArgument(line); }) {
      return decltype(T::lumoArgument(line))();
    } else {
      return TypeList<>();
    }
  };
  return [=]<int... at>(std::integer_sequence<int, at...>) {
    return decltype((TypeList<>() + ... + typeAt(Line<T::lumoBegin + at>())))();
  }
  (std::make_integer_sequence<int, T::lumoEnd - T::lumoBegin>());
}

/// References to the fields of the constructor's arguments, in the order of their lines: what a
/// constructor with many arguments assigns to as one.
template <class T>
auto constructorFields(T& object) {
  const auto fieldAt = [&]<int number>(Line<number> line) {
    if constexpr (requires { T::lumoArgument(line); }) {
      return std::tie(T::lumoField(object, line));
    } else {
      return std::tuple<>();
    }
  };
  return [&]<int... at>(std::integer_sequence<int, at...>) {
    return std::tuple_cat(fieldAt(Line<T::lumoBegin + at>())...);
  }
  (std::make_integer_sequence<int, T::lumoEnd - T::lumoBegin>());
}

/// The arguments of a type's constructor, with a null name at the end.
template <class T>
constexpr auto makeConstructorTable() {
  constexpr std::size_t count = decltype(constructorTypes<T>())::size;
  std::array<ArgumentRecord, count + 1> table{};
  std::size_t filled = 0;
  for (const AttributeRecord& row : attributeTable<T>) {
    if (isConstructorArgument(row.kind)) table[filled++] = {row.name, row.valueType};
  }
  return table;
}

/// The same, made once.
template <class T>
inline constexpr auto constructorTable = makeConstructorTable<T>();

/// The table of a constructor without arguments.
inline constexpr ArgumentRecord noArguments[] = {{}};

/// `Root` is a parameter so that its record is not made before the function for it is known.
template <class T, class Root = PtrInterface>
constexpr const TypeRecord* baseTypeOf() {
  if constexpr (requires { typename T::LumoBase; }) {
    return &typeOf<typename T::LumoBase>();
  } else if constexpr (std::is_base_of_v<Root, T> && !std::is_same_v<Root, T>) {
    return &typeOf<Root>();
  } else {
    return nullptr;
  }
}

/// What kind of type it is, by its form and by whether it keeps anything.
constexpr TypeKind kindOf(ValueForm form, std::span<const AttributeRecord> attributes) {
  if (form == ValueForm::entity) return TypeKind::entity;
  if (form == ValueForm::enumeration) return TypeKind::enumeration;
  if (form != ValueForm::record) return TypeKind::scalar;
  for (const AttributeRecord& row : attributes) {
    if (isStored(row.kind)) return TypeKind::value;
  }
  return TypeKind::statelessValue;
}

/// A view of an object at an address, or one more handle to an entity.
template <class T>
GenericPtr fromVoidPointer(const TypeRecord&, void* object, bool constant) {
  if constexpr (std::is_base_of_v<PtrInterface, T>) {
    return wrapEntity(Ptr<T>(static_cast<T*>(object)), constant);
  } else {
    return GenericPtr(new GenericIf_<T>(static_cast<T*>(object), constant));
  }
}

/// What a text or an argument list becomes: for an entity the handle to a new one.
template <class T>
using Instance = std::conditional_t<std::is_base_of_v<PtrInterface, T>, Ptr<T>, T>;

/// Reads an object from its strep text; raises a range error with the place for any other text.
template <class T>
GenericPtr fromStrRep(const TypeRecord&, const String& text, bool constant) {
  auto at = StringIterator::begin(text);
  auto value = sequenceToValue<Instance<T>>(at, StringIterator::end(text));
  strepToValueEnd(text, at);
  return wrapAttrValue<Instance<T>>(std::move(value), constant);
}

/// Builds an object from the arguments of its constructor; raises range errors for wrong ones.
template <class T>
GenericPtr fromConstructorArguments(const TypeRecord& type, const GenericArguments& arguments,
                                    bool constant) {
  const ArgumentSpan span = spanOf(arguments);
  if constexpr (!Attributed<T>) {
    needArguments(type.constructorArguments, span);
    return wrapAttrValue(T(), constant);
  } else if constexpr (std::is_base_of_v<PtrInterface, T>) {
    return wrapEntity(applyArguments(constructorTypes<T>(), type.constructorArguments, span,
                                     [](const auto&... values) { return newEntity<T>(values...); }),
                      constant);
  } else {
    return wrapAttrValue(unwrapConstructorArgs<T>(type, span, constructorTypes<T>()), constant);
  }
}

/// Whether the constructor that the attributes tell is there: the platform's own entities are made
/// elsewhere.
template <class T>
constexpr bool isConstructible() {
  if constexpr (Attributed<T>) {
    return []<class... Types>(TypeList<Types...>) {
      return std::is_constructible_v<T, const Types&...>;
    }(constructorTypes<T>());
  } else {
    return std::is_default_constructible_v<T> && !std::is_base_of_v<PtrInterface, T>;
  }
}

/// Fills in the attributes, and what ends the construction of an object.
template <class T>
constexpr void addAttributes(TypeRecord& record) {
  record.attributes = attributeTable<T>;
  record.constructorArguments = constructorTable<T>.data();
  if constexpr (requires(T & object) { object.handleInitialized(); }) {
    record.handleInitialized = [](void* object) { static_cast<T*>(object)->handleInitialized(); };
  }
}

/// Fills in those comparisons that the type has.
template <class T>
constexpr void addComparisons(TypeRecord& record) {
  if constexpr (requires(const T& a) { bool{!a}; } && !std::is_arithmetic_v<T>) {
    record.isDefault = [](const void* object) { return !*static_cast<const T*>(object); };
  } else if constexpr (requires(const T& a) { bool{a == T()}; }) {
    record.isDefault = [](const void* object) { return *static_cast<const T*>(object) == T(); };
  }
  if constexpr (requires(const T& a) { bool{a == a}; }) {
    record.equal = [](const void* a, const void* b) {
      return *static_cast<const T*>(a) == *static_cast<const T*>(b);
    };
  }
  if constexpr (requires(const T& a) { bool{a < a}; }) {
    record.less = [](const void* a, const void* b) {
      return *static_cast<const T*>(a) < *static_cast<const T*>(b);
    };
  }
}

/// Fills in the conversions that the type's form allows.
template <class T>
constexpr void addConversions(TypeRecord& record) {
  constexpr ValueForm form = valueFormOf<T>();
  if constexpr (form == ValueForm::integer || form == ValueForm::number ||
                form == ValueForm::enumeration) {
    record.toInteger = [](const void* object) {
      return Lumo::toInteger(*static_cast<const T*>(object));
    };
    record.fromInteger = [](AnyInteger value) {
      return wrapAttrValue(Lumo::fromInteger<T>(value));
    };
  }
  if constexpr (form == ValueForm::text || form == ValueForm::notation ||
                form == ValueForm::enumeration) {
    record.toText = [](const void* object) { return plainText(*static_cast<const T*>(object)); };
    record.fromText = [](std::string_view text) {
      auto value = fromPlainText<T>(text);
      if (!value) {
        throw RangeException("'" + std::string(text) + "' is no " + TypeName<T>::value);
      }
      return wrapAttrValue(std::move(*value));
    };
  }
  if constexpr (Enumerated<T>) record.enumEntries = Enumeration<T>::entries;
}

/// The whole record of a type.
template <class T>
constexpr TypeRecord makeTypeRecord() {
  TypeRecord record;
  record.name = TypeName<T>::value;
  if constexpr (!std::is_void_v<T>) {
    record.form = valueFormOf<T>();
    record.base = baseTypeOf<T>();
    record.constructorArguments = noArguments;
    if constexpr (Attributed<T>) addAttributes<T>(record);
    record.kind = kindOf(record.form, record.attributes);
    record.FromVoidPointer = &fromVoidPointer<T>;
    if constexpr (isConstructible<T>()) {
      record.genericIfFromCtorArgs = &fromConstructorArguments<T>;
    }
    record.FromStrRep = &fromStrRep<T>;
    record.genericIfAttributeOp = &attributeOp;
    record.genericIfIterator = &collectionIterator;
    record.genericIfIteratorKey = &collectionIteratorKey;
    if constexpr (!std::is_base_of_v<PtrInterface, T>) {
      addComparisons<T>(record);
      addConversions<T>(record);
    }
  }
  return record;
}

} // namespace Lumo
