#include "command/shell/HistoryFile.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace command::shell {

namespace {

/// The file has up to twice as many, so that it is not written anew for each line.
constexpr std::size_t mostLines = 1000;

/// Only the user may read what was typed. A file of another kind, which could block, is none.
int openFile(const std::string& path, int flags) {
  const int fd = open(path.c_str(), flags | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0600);
  struct stat status {};
  const bool isFile = fd >= 0 && fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
  if (isFile && fchmod(fd, 0600) == 0) return fd;
  if (fd >= 0) close(fd);
  return -1;
}

/// Text that cannot be written is not kept.
void writeFile(const std::string& path, int flags, const std::string& text) {
  const int fd = openFile(path, O_WRONLY | flags);
  if (fd < 0) return;
  [[maybe_unused]] const auto count = write(fd, text.data(), text.size());
  close(fd);
}

std::vector<std::string> linesOf(const std::string& path) {
  std::error_code ignored;
  std::vector<std::string> lines;
  if (!std::filesystem::is_regular_file(path, ignored)) return lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) lines.push_back(std::move(line));
  return lines;
}

} // namespace

HistoryFile::HistoryFile(std::string path) : path_(std::move(path)), lines_(linesOf(path_)) {
  if (lines_.size() > 2 * mostLines) shorten();
}

void HistoryFile::shorten() {
  lines_.erase(lines_.begin(), lines_.end() - mostLines);
  std::string text;
  for (const auto& line : lines_) text += line + "\n";
  writeFile(path_, O_TRUNC, text);
}

void HistoryFile::add(const std::string& line) const {
  if (path_.empty()) return;
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), ignored);
  writeFile(path_, O_APPEND, line + "\n");
}

std::string historyPath() {
  const auto named = [](const char* variable) {
    const char* const value = std::getenv(variable);
    return std::string(value && *value == '/' ? value : "");
  };
  if (const auto state = named("XDG_STATE_HOME"); !state.empty()) return state + "/rova/history";
  const auto home = named("HOME");
  return home.empty() ? home : home + "/.local/state/rova/history";
}

} // namespace command::shell
