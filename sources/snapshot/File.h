// Whole files: read at once, and replaced at once.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sources::snapshot {

/// The bytes of a file, or of the standard input for "-", with `padding` zero bytes behind them.
/// Any readable file will do, a pipe too. Raises `SourceError` with the path and the system's text.
std::string readFile(const std::string& path, std::size_t padding);

/// Writes a file that takes the place of the one at `path` in one step, when `commit` is called.
/// A writer that goes without it leaves the old file. What is at `path` and is no regular file is
/// written straight, as is the standard output for "-". Raises `SourceError` with the path and the
/// system's text.
class FileWriter {
 public:
  explicit FileWriter(const std::string& path);
  ~FileWriter();
  FileWriter(const FileWriter&) = delete;
  FileWriter& operator=(const FileWriter&) = delete;

  void write(std::string_view bytes);
  void commit();

 private:
  void openBeside();
  [[noreturn]] void fail() const;

  std::string path_;
  std::string target_;    // `path_` with links followed
  std::string temporary_; // empty when the file is written straight
  int fd_ = -1;
};

} // namespace sources::snapshot
