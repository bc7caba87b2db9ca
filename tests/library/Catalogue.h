// What the tests of the loaded library share: the library itself, and the list of its types in
// catalogue.txt, which was written by hand from the interface.
#pragma once

#include <string>
#include <vector>

using Lines = std::vector<std::string>;

/// The library, loaded once for the process, and the library's types in the registry then.
struct Library {
  Lines typesBefore;
  void* handle = nullptr;
  Lines types; ///< in the registry's order
};
const Library& library();

/// Names of the library's types in the registry by now.
Lines registered();

/// One type of the catalogue.
struct CatalogueEntry {
  std::string name;
  std::string text; ///< what reading it from text does: "reads", "stops" or "none"
  Lines lines;      ///< as in the file, one blank between words
};
/// In the file's order; raises a runtime error when there is no file.
const std::vector<CatalogueEntry>& catalogue();
