#include "command/ShowTypes.h"

#include "lumo/KindWords.h"
#include "rova/CliSupport.h"
#include "scrivo/Printer.h"

#include <algorithm>
#include <string>
#include <unistd.h>

namespace command {

namespace {

using Lumo::AttributeKind;
using Lumo::AttributeRecord;
using Lumo::kindWord;
using Lumo::TypeRecord;

/// "(fd: U32, fmt: U32): bool" for a method, "VALUE by KEY" for a collection, the type for the
/// rest.
std::string typeText(const AttributeRecord& row) {
  if (row.keyType) {
    const std::string inside = row.internalKey ? std::string(" ") + row.internalKey : "";
    return std::string(row.valueType->name) + " by " + row.keyType->name + inside;
  }
  if (row.kind != AttributeKind::method) return row.valueType->name;
  std::string arguments;
  for (const auto* at = row.arguments.data(); at->name; ++at) {
    arguments += std::string(arguments.empty() ? "" : ", ") + at->name + ": " + at->type->name;
  }
  return "(" + arguments + "): " + row.valueType->name;
}

/// Prints types; one value of each kind of word, set anew for each.
class TypePrinter {
 public:
  explicit TypePrinter(scrivo::Printer& printer) : printer_(printer) {}

  /// One type with its attributes.
  void printType(const TypeRecord& type) {
    begin(type);
    printer_.addFrills("%s: %s\n", type.name, kindWord(type.kind));
    if (type.base) printer_.addFrills("base: %s\n", type.base->name);
    printValues(type);
    printAttributes(type);
    printer_.endDictEntry();
  }

  /// One type as a line of the list; the model has all of it.
  void printLine(const TypeRecord& type) {
    begin(type);
    printer_.addFrills("%-38s %-16s %5u\n", type.name, kindWord(type.kind), type.numAttributes());
    if (printer_.format() == scrivo::modelFormat) {
      printValues(type);
      printAttributes(type);
    }
    printer_.endDictEntry();
  }

 private:
  void begin(const TypeRecord& type) {
    name_.setValue(type.name);
    printer_.startDictEntry(name_);
    addToModel(kind_, kindWord(type.kind));
    if (type.base) addToModel(base_, type.base->name);
  }

  void addToModel(scrivo::StringAttrInfo& info, const char* value) {
    info.setValue(value);
    printer_.addArgs("", info.getArg());
  }

  void printValues(const TypeRecord& type) {
    if (type.enumEntries.empty()) return;
    printer_.addFrills("\n  number  value\n");
    printer_.startDict("values");
    for (const Lumo::EnumEntry& entry : type.enumEntries) {
      valueName_.setValue(Lumo::String(entry.name));
      number_.setValue(entry.value);
      printer_.startSimpleDictEntry(valueName_);
      printer_.addAttributes("%8u", 1, number_.getArg());
      printer_.addFrills("  %s\n", entry.name);
      printer_.endSimpleDictEntry();
    }
    printer_.endDict();
  }

  void printAttributes(const TypeRecord& type) {
    if (type.attributes.empty()) return;
    std::size_t width = sizeof "attribute" - 1;
    for (const AttributeRecord& row : type.attributes) {
      width = std::max(width, std::string_view(row.name).size());
    }
    printer_.addFrills("\n  index  %s  kind                  type\n", padded("attribute", width));
    printer_.startDict("attributes");
    for (const AttributeRecord& row : type.attributes) printAttribute(type, row, width);
    printer_.endDict();
  }

  static std::string padded(std::string text, std::size_t width) {
    return text.append(width - text.size(), ' ');
  }

  void printAttribute(const TypeRecord& type, const AttributeRecord& row, std::size_t width) {
    name_.setValue(row.name);
    index_.setValue(row.index);
    kind_.setValue(kindWord(row.kind));
    printer_.startDictEntry(name_);
    printer_.addAttributes("%7u", 1, index_.getArg());
    printer_.addFrills("  %s", padded(row.name, width));
    printer_.addAttributes("  %-20s", 1, kind_.getArg());
    printer_.addFrills("  %s\n", typeText(row));
    addToModel(type_, row.valueType->name);
    if (row.owner != &type) addToModel(owner_, row.owner->name);
    if (row.keyType) addToModel(key_, row.keyType->name);
    if (row.internalKey) addToModel(internalKey_, row.internalKey);
    if (row.kind == AttributeKind::method) printArguments(row);
    printer_.endDictEntry();
  }

  void printArguments(const AttributeRecord& row) {
    printer_.startList("arguments");
    for (const auto* at = row.arguments.data(); at->name; ++at) {
      printer_.startListEntry();
      addToModel(argument_, at->name);
      addToModel(type_, at->type->name);
      printer_.endListEntry();
    }
    printer_.endList();
  }

  scrivo::Printer& printer_;
  scrivo::StringAttrInfo name_{printer_, "name", true};
  scrivo::StringAttrInfo valueName_{printer_, "value", true};
  scrivo::StringAttrInfo kind_{printer_, "kind"};
  scrivo::StringAttrInfo base_{printer_, "base"};
  scrivo::StringAttrInfo owner_{printer_, "owner"};
  scrivo::StringAttrInfo type_{printer_, "type"};
  scrivo::StringAttrInfo key_{printer_, "key"};
  scrivo::StringAttrInfo internalKey_{printer_, "internalKey"};
  scrivo::StringAttrInfo argument_{printer_, "name"};
  scrivo::UintAttrInfo index_{printer_, "index"};
  scrivo::UintAttrInfo number_{printer_, ""};
};

/// The type of that name, with or without its namespace; null for none.
const TypeRecord* findType(std::string_view name) {
  for (const TypeRecord* type : Lumo::typeNodes()) {
    if (type->name == name || Lumo::shortName(*type) == name) return type;
  }
  return nullptr;
}

} // namespace

ExitStatus showTypes(const grammar::Parsed& parsed, const Options& options) {
  const auto name = parsed.text("type");
  const TypeRecord* const chosen = findType(name);
  if (!chosen && parsed.has("type")) {
    parsed.fail("type", "there is no type " + name + ": rova types lists them");
  }
  scrivo::Printer printer(STDOUT_FILENO, options.format);
  TypePrinter types(printer);
  printer.start();
  printer.startDict("types");
  if (chosen) {
    types.printType(*chosen);
  } else {
    printer.addFrills("%-38s %-16s %s\n", "type", "kind", "attributes");
    for (const TypeRecord* type : Lumo::typeNodes()) types.printLine(*type);
  }
  printer.endDict();
  printer.end();
  printer.close();
  return success;
}

} // namespace command
