#include "sources/kernel/Namespace.h"

#include "lumo/Assert.h"
#include "sources/SourceError.h"

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

namespace sources::kernel {

namespace {

constexpr const char* folder = "/run/netns";

/// The namespaces that have names, in order; none when the folder cannot be read.
std::vector<std::string> knownNames() {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string knownNamesText() {
  std::string text;
  for (const std::string& name : knownNames()) text += (text.empty() ? "" : ", ") + name;
  return text.empty() ? "which has none" : "which has " + text;
}

[[noreturn]] void failToEnter(const std::string& name, int error) {
  const std::string what = "cannot enter network namespace \"" + name + "\": ";
  if (error == ENOENT) {
    throw SourceError(what + "it is not in " + folder + ", " + knownNamesText());
  }
  throw SourceError(
      what + std::strerror(error) +
      (error == EPERM || error == EACCES ? "; entering a namespace needs root (CAP_SYS_ADMIN)"
       : error == EINVAL
           ? std::string("; ") + folder + "/" + name + " is a file that is no network namespace"
           : ""));
}

/// The file of a namespace. A name with a slash would lead out of the folder.
std::string pathOf(const std::string& name) {
  if (name.find('/') != std::string::npos || name == "." || name == "..") {
    throw SourceError("\"" + name +
                      "\" is not the name of a network namespace: expected a name in " + folder +
                      ", " + knownNamesText());
  }
  return std::string(folder) + "/" + name;
}

/// Whether the file has a number other than 0. Without IPv6 its file is missing: nothing is
/// forwarded.
bool readFlag(const char* path) {
  const File file(path);
  if (file.descriptor() < 0 && errno == ENOENT) return false;
  char digit = '0';
  if (file.descriptor() < 0 || ::read(file.descriptor(), &digit, 1) < 0) {
    throw SourceError(std::string(path) + ": cannot be read: " + std::strerror(errno));
  }
  return digit != '0';
}

} // namespace

File::File(const std::string& path) : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}

File::~File() {
  if (descriptor_ >= 0) close(descriptor_);
}

NamespaceStay::NamespaceStay(const std::string& name) : home_("/proc/thread-self/ns/net") {
  if (name.empty()) return;
  const File there(pathOf(name));
  if (there.descriptor() < 0) failToEnter(name, errno);
  if (home_.descriptor() < 0) {
    throw SourceError("cannot enter network namespace \"" + name +
                      "\": no way back: /proc/thread-self/ns/net: " + std::strerror(errno) +
                      "; mount /proc");
  }
  if (setns(there.descriptor(), CLONE_NEWNET) != 0) failToEnter(name, errno);
  away_ = true;
}

NamespaceStay::~NamespaceStay() {
  if (away_) {
    LUMO_ASSERT(setns(home_.descriptor(), CLONE_NEWNET) == 0, "setns(home, CLONE_NEWNET) == 0");
  }
}

Forwarding readForwarding() {
  return {readFlag("/proc/sys/net/ipv4/ip_forward"),
          readFlag("/proc/sys/net/ipv6/conf/all/forwarding")};
}

} // namespace sources::kernel
