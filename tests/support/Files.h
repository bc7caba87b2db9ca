// Files as texts.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace support {

/// A folder for the life of the object.
struct TemporaryFolder {
  TemporaryFolder() {
    char name[] = "/tmp/rova-test-XXXXXX";
    path = mkdtemp(name);
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  std::filesystem::path path;
};

inline std::string fileText(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

} // namespace support
