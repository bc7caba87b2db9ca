#include "Catalogue.h"

#include "lumo/Type.h"

#include <dlfcn.h>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

std::vector<CatalogueEntry> readCatalogue() {
  std::ifstream in(ROVA_CATALOGUE);
  if (!in) throw std::runtime_error("cannot read " ROVA_CATALOGUE);
  std::vector<CatalogueEntry> entries;
  for (std::string line; std::getline(in, line);) {
    std::istringstream split(line);
    Lines words;
    for (std::string word; split >> word;) words.push_back(word);
    if (words.empty() || words.front() == "#") continue;
    if (line.front() != ' ') entries.push_back({words.front(), words.back(), {}});
    std::string& text = entries.back().lines.emplace_back(words.front());
    for (std::size_t i = 1; i < words.size(); ++i) text += " " + words[i];
  }
  return entries;
}

} // namespace

const Library& library() {
  static const Library loaded = [] {
    Library result;
    result.typesBefore = registered();
    result.handle = dlopen(ROVA_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (!result.handle) throw std::runtime_error(dlerror());
    result.types = registered();
    return result;
  }();
  return loaded;
}

Lines registered() {
  Lines names;
  for (const auto* const type : Lumo::typeNodes()) {
    if (std::string_view(type->name).starts_with("Rova::")) names.emplace_back(type->name);
  }
  return names;
}

const std::vector<CatalogueEntry>& catalogue() {
  static const auto entries = readCatalogue();
  return entries;
}
