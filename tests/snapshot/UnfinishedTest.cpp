// What a process that ends at once takes away: the files that it has not finished, and no other.
#include "sources/Unfinished.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

namespace {

namespace fs = std::filesystem;
using sources::removeUnfinished;
using sources::Unfinished;

TEST(Unfinished, FilesAreRemovedAndNoOthers) {
  std::string name = fs::temp_directory_path() / "unfinished.XXXXXX";
  const fs::path folder = mkdtemp(name.data());
  const auto make = [&](const char* file) {
    std::ofstream(folder / file) << "text";
    return (folder / file).string();
  };
  const Unfinished first(make("first")), never(folder / "never made"), second(make("second"));
  const Unfinished tooLong(std::string(5000, 'x'));
  { const Unfinished finished(make("finished")); }
  removeUnfinished();
  EXPECT_FALSE(fs::exists(folder / "first"));
  EXPECT_FALSE(fs::exists(folder / "second"));
  EXPECT_TRUE(fs::exists(folder / "finished"));
  make("first");
  removeUnfinished();
  EXPECT_TRUE(fs::exists(folder / "first")) << "a name is used once";
  fs::remove_all(folder);
}

TEST(Unfinished, NamesBeyondTheLastPlaceAreLeftAlone) {
  std::vector<std::unique_ptr<Unfinished>> many;
  for (int i = 0; i < 100; ++i) many.push_back(std::make_unique<Unfinished>("/nowhere/x"));
  many.clear();
  removeUnfinished();
}

} // namespace
