// The library's type records, held against the catalogue field by field.
#include "Catalogue.h"

#include "lumo/KindWords.h"

#include <gtest/gtest.h>

namespace {

using Lumo::AttributeKind;
using Lumo::AttributeRecord;
using Lumo::kindWord;
using Lumo::TypeRecord;

std::string textWord(const TypeRecord& type) {
  if (type.isEntity()) return "none";
  return type.isReadable() ? "reads" : "stops";
}

/// The line of the catalogue that would describe the attribute.
std::string described(const TypeRecord& type, const AttributeRecord& row) {
  std::string line = std::to_string(row.index) + " " + row.name + " " + kindWord(row.kind) + " " +
                     row.valueType->name;
  if (row.keyType) line += std::string(" by ") + row.keyType->name;
  if (row.internalKey) line += std::string(" inside ") + row.internalKey;
  if (row.owner != &type) line += std::string(" of ") + row.owner->name;
  const char* separator = " with ";
  for (const auto& argument : row.arguments) {
    if (!argument.name) break;
    line += std::string(separator) + argument.name + " " + argument.type->name;
    separator = ", ";
  }
  return line;
}

Lines described(const TypeRecord& type) {
  Lines lines{std::string(type.name) + " " + kindWord(type.kind) + " base " +
              (type.base ? type.base->name : "-") + " text " + textWord(type)};
  for (const auto& row : type.attributes) lines.push_back(described(type, row));
  for (const auto& [number, name] : type.enumEntries) {
    lines.push_back("= " + std::to_string(number) + " " + std::string(name));
  }
  return lines;
}

TEST(CatalogueTest, EveryTypeIsAsItIsWrittenDown) {
  library();
  for (const auto& entry : catalogue()) {
    const TypeRecord* const type = Lumo::typeNode(entry.name);
    ASSERT_NE(type, nullptr) << entry.name;
    EXPECT_EQ(described(*type), entry.lines);
  }
}

TEST(CatalogueTest, AConstructorTakesTheMarkedAttributesInTheirOrder) {
  library();
  for (const auto& entry : catalogue()) {
    const TypeRecord& type = *Lumo::typeNode(entry.name);
    Lines marked, arguments;
    for (const auto& row : type.attributes) {
      if (!Lumo::isConstructorArgument(row.kind)) continue;
      marked.push_back(std::string(row.name) + " " + row.valueType->name);
    }
    for (const auto* at = type.constructorArguments; at->name; ++at) {
      arguments.push_back(std::string(at->name) + " " + at->type->name);
    }
    EXPECT_EQ(arguments, marked) << entry.name;
  }
}

TEST(CatalogueTest, EveryTypeHasItsEntryPoints) {
  library();
  for (const auto& entry : catalogue()) {
    const TypeRecord& type = *Lumo::typeNode(entry.name);
    EXPECT_TRUE(type.FromVoidPointer && type.genericIfFromCtorArgs && type.FromStrRep &&
                type.genericIfAttributeOp && type.genericIfIterator && type.genericIfIteratorKey)
        << entry.name;
  }
}

} // namespace
