// The library as a host process meets it: loaded at run time, known by its registry and by a
// section that tools read without loading it.
#include "lumo/Type.h"

#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;

// The order in which the library's types are registered.
const Names registrationOrder = {"Rova::PolicyInfo",
                                 "Rova::ClearIntfRoutesAndViasHelper",
                                 "Rova::CachedFec",
                                 "Rova::Route6Summary",
                                 "Rova::NexthopGroupCounterHelper",
                                 "Rova::RdAssignmentChecker",
                                 "Rova::RouteSorter",
                                 "Rova::PolicyInfoSet",
                                 "Rova::AddrMatchType",
                                 "Rova::InvalidNextHopChecker",
                                 "Rova::RouteSummary",
                                 "Rova::StaticRoutesCliSaver",
                                 "Rova::Address6AssignmentChecker",
                                 "Rova::InvalidNextHop6Checker",
                                 "Rova::NexthopGroupCliCounterInterface",
                                 "Rova::AddressQueryParams",
                                 "Rova::SortedTunViaSet",
                                 "Rova::NexthopGroupSummaryHelper",
                                 "Rova::CachedNhgVia",
                                 "Rova::NexthopInfo",
                                 "Rova::RovaConsts",
                                 "Rova::RouteSortKey",
                                 "Rova::NexthopGroupHelper",
                                 "Rova::AddressAssignmentChecker",
                                 "Rova::CounterEntry",
                                 "Rova::StaticRoutesRibCommon",
                                 "Rova::Route6Sorter",
                                 "Rova::Address6QueryParams",
                                 "Rova::SortedTunVia",
                                 "Rova::AddressQueryResult",
                                 "Rova::CachedVia",
                                 "Rova::CounterIndex"};

/// The library, loaded once for the process.
void* library() {
  static void* const handle = dlopen(ROVA_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  EXPECT_NE(handle, nullptr) << dlerror();
  return handle;
}

/// The library's types in the registry, in its order.
Names registered() {
  Names names;
  for (const auto* const type : Lumo::typeNodes()) {
    if (std::string_view(type->name).starts_with("Rova::")) names.emplace_back(type->name);
  }
  return names;
}

/// The NUL-terminated texts of a section of an ELF file, and its flags.
struct Section {
  Names texts;
  std::uint64_t flags = 0;
};

template <class Record>
Record recordAt(const std::string& file, std::uint64_t offset) {
  Record record;
  std::memcpy(&record, file.data() + offset, sizeof record);
  return record;
}

Section sectionOf(const char* path, std::string_view wanted) {
  std::ifstream in(path, std::ios::binary);
  const std::string file{std::istreambuf_iterator<char>(in), {}};
  const auto header = recordAt<Elf64_Ehdr>(file, 0);
  const auto section = [&](unsigned index) {
    return recordAt<Elf64_Shdr>(file, header.e_shoff + index * header.e_shentsize);
  };
  const auto names = section(header.e_shstrndx);
  Section result;
  for (unsigned i = 0; i < header.e_shnum; ++i) {
    const auto at = section(i);
    if (file.data() + names.sh_offset + at.sh_name != wanted) continue;
    result.flags = at.sh_flags;
    for (std::uint64_t offset = 0; offset < at.sh_size; offset += result.texts.back().size() + 1) {
      result.texts.emplace_back(file.data() + at.sh_offset + offset);
    }
  }
  // A sanitizer pads the section's one object with zeros.
  while (!result.texts.empty() && result.texts.back().empty()) result.texts.pop_back();
  return result;
}

// Runs first: the library must not have been loaded yet.
TEST(LoadTest, LoadingRegistersTheTypes) {
  EXPECT_EQ(registered(), Names());
  ASSERT_NE(library(), nullptr);
  const Names found = registered();
  std::size_t place = 0;
  for (const std::string& name : registrationOrder) {
    if (place < found.size() && found[place] == name) ++place;
  }
  EXPECT_EQ(place, found.size()) << "a type is unknown or out of its order";
  for (const char* const name : {"Rova::CachedFec", "Rova::RouteSorter", "Rova::CachedNhgVia",
                                 "Rova::Route6Sorter", "Rova::CachedVia"}) {
    EXPECT_NE(Lumo::typeNode(name), nullptr) << name;
  }
}

TEST(LoadTest, TheSectionNamesTheTypesInReverse) {
  library();
  const auto section = sectionOf(ROVA_LIBRARY, ".lumo.type");
  const Names found = registered();
  EXPECT_EQ(section.texts, Names(found.rbegin(), found.rend()));
  EXPECT_EQ(section.flags & SHF_WRITE, 0u) << "the section is to be read-only";
}

TEST(LoadTest, ThePlainFunctionIsFoundByItsName) {
  using Function = const char* (*)(const char*);
  const auto function = reinterpret_cast<Function>(dlsym(library(), "Rova_protocolCodeWordToCode"));
  ASSERT_NE(function, nullptr);
  EXPECT_STREQ(function("ospfExternalType1"), "O E1");
}

TEST(LoadTest, LoadingTwiceRegistersOnce) {
  library();
  const Names before = registered();
  void* const again = dlopen(ROVA_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  EXPECT_EQ(again, library());
  EXPECT_EQ(registered(), before);
  dlclose(again);
}

} // namespace
