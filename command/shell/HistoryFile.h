// The lines of former shells, one a line in a file.
#pragma once

#include <string>
#include <vector>

namespace command::shell {

/// Without a place for the file, and where it cannot be read or written, there is no history: that
/// is never an error. Each line is written as it comes, so that two shells, and one that is killed,
/// lose none.
class HistoryFile {
 public:
  /// The lines that the file keeps. `path` is empty for no file.
  explicit HistoryFile(std::string path);

  const std::vector<std::string>& lines() const { return lines_; }
  void add(const std::string& line) const;

 private:
  void shorten();

  std::string path_;
  std::vector<std::string> lines_; ///< those of former shells, the last one last
};

/// rova/history in $XDG_STATE_HOME, or in ~/.local/state; empty without either.
std::string historyPath();

} // namespace command::shell
