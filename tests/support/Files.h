// Files as texts.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace support {

inline std::string fileText(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

} // namespace support
