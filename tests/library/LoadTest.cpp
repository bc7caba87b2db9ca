// The library as a host process meets it: loaded at run time, known by its registry and by a
// section that tools read without loading it.
#include "Catalogue.h"

#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>

namespace {

/// The NUL-terminated texts of a section of an ELF file, and its flags.
struct Section {
  Lines texts;
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

TEST(LoadTest, LoadingRegistersTheTypesInTheirOrder) {
  Lines expected;
  for (const auto& entry : catalogue()) expected.push_back(entry.name);
  EXPECT_EQ(library().typesBefore, Lines());
  EXPECT_EQ(library().types, expected);
}

TEST(LoadTest, TheSectionNamesTheTypesInReverse) {
  const Lines& types = library().types;
  const auto section = sectionOf(ROVA_LIBRARY, ".lumo.type");
  EXPECT_EQ(section.texts, Lines(types.rbegin(), types.rend()));
  EXPECT_EQ(section.flags & SHF_WRITE, 0u) << "the section is to be read-only";
}

TEST(LoadTest, ThePlainFunctionIsFoundByItsName) {
  using Function = const char* (*)(const char*);
  const auto function =
      reinterpret_cast<Function>(dlsym(library().handle, "Rova_protocolCodeWordToCode"));
  ASSERT_NE(function, nullptr);
  EXPECT_STREQ(function("ospfExternalType1"), "O E1");
}

TEST(LoadTest, LoadingTwiceRegistersOnce) {
  const Library& first = library();
  void* const again = dlopen(ROVA_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  EXPECT_EQ(again, first.handle);
  EXPECT_EQ(registered(), first.types);
  dlclose(again);
}

} // namespace
