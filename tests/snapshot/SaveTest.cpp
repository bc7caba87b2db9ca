// Files: a save leaves the whole new file or the whole old one.
#include "sources/snapshot/Snapshot.h"
#include "state/DeviceBuilder.h"
#include "support/Expect.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using sources::snapshot::load;
using sources::snapshot::save;
using sources::snapshot::saveText;
using support::fileText;

template <class Act>
std::string errorOf(Act&& act) {
  return support::messageOf<sources::SourceError>(act);
}

class Save : public testing::Test {
 protected:
  Save() {
    std::string name = fs::temp_directory_path() / "snapshot.XXXXXX";
    folder_ = mkdtemp(name.data());
    file_ = folder_ / "leaf1.json";
    for (int i = 0; i < 3000; ++i) {
      device_.defaultVrf().routes->insert(
          {Kesh::pfx(static_cast<std::uint32_t>(i) << 8, 24), 0, 1, {}, {}});
    }
  }
  ~Save() override { fs::remove_all(folder_); }

  std::size_t filesInFolder() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), {}));
  }

  fs::path folder_, file_;
  state::DeviceBuilder device_;
};

TEST_F(Save, ReplacesAFileWholeForThoseWhoHaveItOpen) {
  std::ofstream(file_) << "old";
  chmod(file_.c_str(), 0640);
  std::ifstream reader(file_);
  save(device_.state, file_);
  std::string old;
  reader >> old;
  EXPECT_EQ(old, "old");
  EXPECT_EQ(fileText(file_), saveText(device_.state));
  EXPECT_EQ(fs::status(file_).permissions(), fs::perms(0640));
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(Save, FollowsALink) {
  std::ofstream(folder_ / "target.json") << "old";
  fs::create_symlink("target.json", file_);
  save(device_.state, file_);
  EXPECT_TRUE(fs::is_symlink(file_));
  EXPECT_EQ(fileText(folder_ / "target.json"), saveText(device_.state));
  EXPECT_EQ(saveText(load(file_)), saveText(device_.state));
}

TEST_F(Save, ThatFailsHalfwayLeavesTheOldFileAlone) {
  std::ofstream(file_) << "old";
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit before {};
  getrlimit(RLIMIT_FSIZE, &before);
  const struct rlimit small { 70000, before.rlim_max };
  setrlimit(RLIMIT_FSIZE, &small);
  const auto error = errorOf([&] { save(device_.state, file_); });
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(error, file_.string() + ": cannot be written: File too large");
  EXPECT_EQ(fileText(file_), "old");
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(Save, OfACorruptTableLeavesTheOldFileAlone) {
  std::ofstream(file_) << "old";
  device_.fecs->insert(Vanta::Fib::Fec(Vanta::Fib::FecId(1)));
  device_.fecs->corruptAt(1);
  EXPECT_THROW(save(device_.state, file_), Tembra::CorruptionDetectedException);
  EXPECT_EQ(fileText(file_), "old");
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(Save, WritesADeviceStraightAndTellsThatItIsFull) {
  ASSERT_TRUE(fs::is_character_file("/dev/full"));
  EXPECT_EQ(errorOf([&] { save(device_.state, "/dev/full"); }),
            "/dev/full: cannot be written: No space left on device");
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
  save(device_.state, "/dev/null");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(Save, WritesTheStandardOutputForADash) {
  testing::internal::CaptureStdout();
  save(device_.state, "-");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), saveText(device_.state));
}

TEST_F(Save, NamesThePathThatFailsOnOneLine) {
  const std::string missing = folder_ / "no" / "leaf1.json";
  EXPECT_EQ(errorOf([&] { save(device_.state, missing); }),
            missing + ": cannot be written: No such file or directory");
  std::ofstream(file_) << "{}";
  const struct {
    std::string path, shown, error;
  } cases[] = {{missing, missing, "cannot be read: No such file or directory"},
               {folder_, folder_, "cannot be read: Is a directory"},
               {"no\nfile", "no\\x0afile", "cannot be read: No such file or directory"},
               {file_, file_, "$: found no \"rovaSnapshot\", expected that key"}};
  for (const auto& [path, shown, error] : cases) {
    EXPECT_EQ(errorOf([&, &from = path] { load(from); }), shown + ": " + error);
  }
}

} // namespace
