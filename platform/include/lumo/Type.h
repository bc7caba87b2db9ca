// Type records: what the framework knows of a type and its attributes, and the registry of them.
//
//   const Lumo::TypeRecord* type = Lumo::typeNode("Rova::RouteSortKey");
//   Lumo::Ptr<Lumo::GenericIf> key = Lumo::construct(*type, {prefix, preference});
//   Lumo::Ptr<Lumo::GenericIf> value = Lumo::read(*key, "prefix");
//
// lumo/Reflect.h has those calls; the records below are what they walk.
#pragma once

#include "lumo/GenericIf.h"
#include "lumo/StrepReader.h"
#include "lumo/ValueForm.h"

#include <array>
#include <boost/container/container_fwd.hpp>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace Lumo {

enum class AttributeKind : std::uint8_t {
  constructorArgument,         ///< given to the constructor, then fixed
  writableConstructorArgument, ///< given to the constructor, writable later
  plain,
  ordered, ///< a collection walked in key order
  hashed,  ///< a collection without an order
  method,
  computed ///< worked out on demand; not part of the text form
};

/// Whether an attribute of the kind has members by key.
constexpr bool isCollection(AttributeKind kind) {
  return kind == AttributeKind::ordered || kind == AttributeKind::hashed;
}
/// Whether an attribute of the kind is given to the constructor.
constexpr bool isConstructorArgument(AttributeKind kind) {
  return kind == AttributeKind::constructorArgument ||
         kind == AttributeKind::writableConstructorArgument;
}
/// Whether the attribute has a field and so a place in the text form.
constexpr bool isStored(AttributeKind kind) {
  return kind != AttributeKind::method && kind != AttributeKind::computed;
}

/// What can be done with an object by name. The numbers are an interface.
enum class OpCode : std::uint32_t {
  read = 0,
  write = 1,
  del = 2,         ///< deletes a member and gives it
  count = 3,       ///< number of members
  secondCount = 4, ///< the collection's count of changes that its walks must notice
  has = 5,         ///< whether the key is a member
  call = 8,
  isDefault = 9, ///< operator!; this one and the next two are for the object as a whole
  equal = 10,    ///< operator== against the object in `key`
  less = 11      ///< operator< against the object in `key`
};

struct AttributeRecord;
using GenericPtr = Ptr<GenericIf>;
/// The arguments of a constructor or method; <boost/container/small_vector.hpp> completes it.
using GenericArguments = boost::container::small_vector<GenericPtr, 8>;
using ArgumentSpan = std::span<const GenericPtr>;

/// What is to be done, and to which attribute.
struct AttributeOp {
  const AttributeRecord* attribute = nullptr; ///< null: the object as a whole
  OpCode code = OpCode::read;
  ArgumentSpan arguments = {}; ///< of a call
};

/// A place in a collection's walk. It survives changes of the collection, which must outlive it.
class LUMO_EXPORT GenericIterator : public PtrInterface {};

/// What a walk can do; one table a collection.
struct IteratorFunctions {
  GenericPtr (*iterObj)(const GenericIterator&); ///< the member, a default value if deleted
  GenericPtr (*iterKey)(const GenericIterator&); ///< its key
  bool (*iterNonnull)(const GenericIterator&);   ///< whether the walk has not ended
  void (*iterInc)(GenericIterator&);             ///< moves on
  void (*iterDel)(GenericIterator&); ///< deletes the member; the walk moves on by iterInc
};

/// An argument or a result; a table of arguments ends with a null name.
struct ArgumentRecord {
  const char* name = nullptr;
  const TypeRecord* type = nullptr;
};

/// One attribute of a type. What the attribute does not do is null.
struct AttributeRecord {
  /// The most arguments of a method, and one for the end of the table.
  static constexpr std::size_t maxArguments = 5;

  const char* name = nullptr;
  const TypeRecord* owner = nullptr; ///< the type that declares it: a base, or the type itself
  AttributeKind kind = AttributeKind::plain;
  const TypeRecord* valueType = nullptr; ///< of a collection: that of its members
  const TypeRecord* keyType = nullptr;   ///< null for what is no collection
  const char* internalKey = nullptr;     ///< the member's attribute that holds its key, if one does
  std::array<ArgumentRecord, maxArguments> arguments{}; ///< of a method; ended by a null name
  std::uint32_t index = 0;
  bool mayBeNull = false;  ///< of a handle given to the constructor: null has a meaning
  bool isConstant = false; ///< of a method: it changes nothing

  GenericPtr (*read)(const void* object) = nullptr;
  void (*write)(void* object, const GenericPtr& value) = nullptr;
  GenericPtr (*readMember)(const void* object, const GenericPtr& key) = nullptr;
  void (*writeMember)(void* object, const GenericPtr& key, const GenericPtr& value) = nullptr;
  GenericPtr (*deleteMember)(void* object, const GenericPtr& key) = nullptr;
  bool (*hasMember)(const void* object, const GenericPtr& key) = nullptr;
  std::size_t (*members)(const void* object) = nullptr;
  std::uint32_t (*secondCount)(const void* object) = nullptr;
  /// At the key, or at the start with a null one.
  Ptr<GenericIterator> (*iterator)(void* object, bool constant, const GenericPtr* key) = nullptr;
  const IteratorFunctions* iteratorFunctions = nullptr;
  GenericPtr (*call)(void* object, const ArgumentRecord* table, ArgumentSpan arguments) = nullptr;
  String (*strep)(const void* object) = nullptr;
  void (*readStrep)(void* object, StringIterator& at, const StringIterator& end) = nullptr;
};

enum class TypeKind : std::uint8_t {
  entity,
  value,
  statelessValue, ///< methods only
  enumeration,
  scalar ///< a number, a text or another type of the platform without attributes
};

/// What the framework knows of a type. Entry points that the type does not have are null.
struct TypeRecord {
  const char* name = nullptr;
  const TypeRecord* base = nullptr; ///< null for a type that is derived from none
  TypeKind kind = TypeKind::scalar;
  ValueForm form = ValueForm::none;
  std::span<const AttributeRecord> attributes;
  const ArgumentRecord* constructorArguments = nullptr; ///< ended by a null name
  std::span<const EnumEntry> enumEntries;

  /// Wraps an object that lives elsewhere: it must outlive the result, unless it is an entity.
  GenericPtr (*FromVoidPointer)(const TypeRecord& type, void* object, bool constant) = nullptr;
  /// Builds an object. Arguments of another number or type raise range errors.
  GenericPtr (*genericIfFromCtorArgs)(const TypeRecord& type, const GenericArguments& arguments,
                                      bool constant) = nullptr;
  /// Reads a strep text, all of it; see lumo/StrepReader.h for the errors.
  GenericPtr (*FromStrRep)(const TypeRecord& type, const String& text, bool constant) = nullptr;
  /// Does `op`; `notHandled` is set when the attribute is not the type's own, so that the base has
  /// to be asked. What the attribute or a constant object does not support raises an error.
  GenericPtr (*genericIfAttributeOp)(const TypeRecord& type, void* object, bool constant,
                                     const AttributeOp& op, const GenericPtr& key,
                                     const GenericPtr& value, bool& notHandled) = nullptr;
  /// A walk from the start, or from a key: at its end when the key is no member. Null for an
  /// attribute that is no collection.
  Ptr<GenericIterator> (*genericIfIterator)(void* object, bool constant,
                                            const AttributeRecord& attribute,
                                            IteratorFunctions& functions) = nullptr;
  Ptr<GenericIterator> (*genericIfIteratorKey)(void* object, bool constant,
                                               const AttributeRecord& attribute,
                                               const GenericPtr& key,
                                               IteratorFunctions& functions) = nullptr;

  // Of the object as a whole.
  bool (*isDefault)(const void* object) = nullptr;
  bool (*equal)(const void* a, const void* b) = nullptr;
  bool (*less)(const void* a, const void* b) = nullptr;
  void (*handleInitialized)(void* object) = nullptr;

  // Conversions of what has no attributes, by its form.
  AnyInteger (*toInteger)(const void* object) = nullptr;
  GenericPtr (*fromInteger)(AnyInteger value) = nullptr;
  String (*toText)(const void* object) = nullptr;
  GenericPtr (*fromText)(std::string_view text) = nullptr;

  /// Whether objects of the type are held by handles, and how many attributes they have:
  bool isEntity() const { return kind == TypeKind::entity; }
  std::uint32_t numAttributes() const { return static_cast<std::uint32_t>(attributes.size()); }
  /// Whether a text can be read as a value of the type: not when it has a collection.
  bool isReadable() const;
  /// The attribute of that name, or null.
  const AttributeRecord* attribute(std::string_view attributeName) const;
};

/// The name behind the last "::".
LUMO_EXPORT std::string_view shortName(const TypeRecord& type);

/// Attribute indexes count from 2, and from 128 more for each level of base class.
inline constexpr std::uint32_t firstAttributeIndex = 2;
/// What each level of base class adds.
inline constexpr std::uint32_t attributeIndexLevel = 128;

/// Enters a type in the registry of the process.
LUMO_EXPORT void typeNodeIs(const TypeRecord& type);
/// The registered type of that full name, or null.
LUMO_EXPORT const TypeRecord* typeNode(std::string_view name);
/// All registered types in the order of their registration.
LUMO_EXPORT const std::vector<const TypeRecord*>& typeNodes();

// The entry points that all types share.
LUMO_EXPORT GenericPtr attributeOp(const TypeRecord& type, void* object, bool constant,
                                   const AttributeOp& op, const GenericPtr& key,
                                   const GenericPtr& value, bool& notHandled);
/// A walk over a collection from its first member, or from that of a key:
LUMO_EXPORT Ptr<GenericIterator> collectionIterator(void* object, bool constant,
                                                    const AttributeRecord& attribute,
                                                    IteratorFunctions& functions);
LUMO_EXPORT Ptr<GenericIterator> collectionIteratorKey(void* object, bool constant,
                                                       const AttributeRecord& attribute,
                                                       const GenericPtr& key,
                                                       IteratorFunctions& functions);

} // namespace Lumo
