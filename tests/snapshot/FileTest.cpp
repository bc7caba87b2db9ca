// Reading files as a whole, from wherever they come, and where that ends.
#include "sources/snapshot/File.h"
#include "sources/SourceError.h"
#include "support/Expect.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace {

using sources::snapshot::readFile;

std::string errorOf(const std::string& path, std::size_t most) {
  return support::messageOf<sources::SourceError>([&] { readFile(path, 0, most); });
}

/// A pipe that a thread fills, by the name that leads to its reading end.
class Pipe {
 public:
  explicit Pipe(std::string text) {
    EXPECT_EQ(pipe2(ends_, O_CLOEXEC), 0);
    writer_ = std::thread([this, given = std::move(text)] {
      EXPECT_EQ(write(ends_[1], given.data(), given.size()), static_cast<ssize_t>(given.size()));
      close(ends_[1]);
    });
  }
  ~Pipe() {
    writer_.join();
    close(ends_[0]);
  }
  std::string path() const { return "/dev/fd/" + std::to_string(ends_[0]); }

 private:
  int ends_[2];
  std::thread writer_;
};

TEST(File, OfAnyLengthIsReadWholeWithItsPadding) {
  for (const std::size_t length : {0u, 1u, 65535u, 65536u, 65537u, 1'000'000u}) {
    std::string text(length, 'x');
    for (std::size_t at = 0; at < length; at += 1000) text[at] = static_cast<char>(at / 1000);
    const Pipe pipe(text);
    const auto read = readFile(pipe.path(), 64);
    EXPECT_EQ(read.text(), text);
    const char* const padding = read.text().data() + length;
    EXPECT_TRUE(std::all_of(padding, padding + 64, [](char byte) { return byte == 0; }));
  }
}

TEST(File, IsReadUpToALimitAlone) {
  EXPECT_EQ(errorOf("/dev/zero", 100'000),
            "/dev/zero: found more than 100000 bytes of text, expected less");
  const Pipe fitting(std::string(100, 'x')), longer(std::string(101, 'x'));
  EXPECT_EQ(readFile(fitting.path(), 0, 100).text().size(), 100u);
  EXPECT_EQ(errorOf(longer.path(), 100),
            longer.path() + ": found more than 100 bytes of text, expected less");
}

} // namespace
