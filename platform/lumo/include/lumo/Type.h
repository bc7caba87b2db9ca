// Type records: what the framework knows of a type and its attributes, and the registry of them.
#pragma once

#include "lumo/GenericIf.h"

#include <array>
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

constexpr bool isCollection(AttributeKind kind) {
  return kind == AttributeKind::ordered || kind == AttributeKind::hashed;
}

struct ArgumentRecord {
  const char* name = nullptr;
  const char* type = nullptr;
};

using GenericArguments = std::span<const Ptr<GenericIf>>;

/// One attribute of a type. An operation that the attribute does not have is null.
struct AttributeRecord {
  static constexpr std::size_t maxArguments = 5;

  const char* name = nullptr;
  AttributeKind kind = AttributeKind::plain;
  const char* valueType = nullptr;
  const char* keyType = nullptr;     ///< null for what is no collection
  const char* internalKey = nullptr; ///< the member's attribute that holds its key, if one does
  std::array<ArgumentRecord, maxArguments> arguments{}; ///< of a method; ended by a null name
  std::uint32_t index = 0;

  Ptr<GenericIf> (*read)(const void* object) = nullptr;
  void (*write)(void* object, const Ptr<GenericIf>& value) = nullptr;
  Ptr<GenericIf> (*readMember)(const void* object, const Ptr<GenericIf>& key) = nullptr;
  void (*writeMember)(void* object, const Ptr<GenericIf>& key,
                      const Ptr<GenericIf>& value) = nullptr;
  Ptr<GenericIf> (*deleteMember)(void* object, const Ptr<GenericIf>& key) = nullptr;
  bool (*hasMember)(const void* object, const Ptr<GenericIf>& key) = nullptr;
  std::size_t (*members)(const void* object) = nullptr;
  Ptr<GenericIf> (*call)(void* object, GenericArguments arguments) = nullptr;
  String (*strep)(const void* object) = nullptr;
};

struct TypeRecord {
  const char* name;
  bool isEntity;
  std::span<const AttributeRecord> attributes;

  /// The attribute of that name, or null.
  const AttributeRecord* attribute(std::string_view attributeName) const;
};

/// Attribute indexes count from 2, and from 128 more for each level of base class.
inline constexpr std::uint32_t firstAttributeIndex = 2;
inline constexpr std::uint32_t attributeIndexLevel = 128;

/// Enters a type in the registry of the process.
LUMO_EXPORT void typeNodeIs(const TypeRecord& type);
/// The registered type of that full name, or null.
LUMO_EXPORT const TypeRecord* typeNode(std::string_view name);
/// All registered types in the order of their registration.
LUMO_EXPORT const std::vector<const TypeRecord*>& typeNodes();

} // namespace Lumo
