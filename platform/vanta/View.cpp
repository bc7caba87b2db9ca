#include "vanta/VantaMap.h"

#include <algorithm>
#include <fstream>

namespace Vanta::Util {

namespace {

std::string& corruptionFolder() {
  static auto* const folder = new std::string;
  return *folder;
}

} // namespace

void corruptionFolderIs(std::string folder) { corruptionFolder() = std::move(folder); }

void writeCorruptionFile(const Tembra::Debuggable& debug, const RootPath& path,
                         const std::string& message) {
  if (corruptionFolder().empty()) {
    if (debug.enabled(1)) debug.write("corruption of " + path.stringValue() + ": " + message);
    return;
  }
  std::string name = path.name();
  std::replace(name.begin(), name.end(), '/', '-');
  std::ofstream file(corruptionFolder() + "/corruption-" + name, std::ios::app);
  file << path.stringValue() << ": " << message << "\n";
}

} // namespace Vanta::Util
