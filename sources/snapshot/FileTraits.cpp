// The order matters: a change of the owner clears bits of the mode, and the mode comes last, for
// only then may others read.
#include "FileTraits.h"

#include "FileError.h"

#include <algorithm>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <vector>

namespace sources::snapshot {

namespace {

constexpr mode_t permissionBits = 07777;

[[noreturn]] void failToKeep(const std::string& path, const std::string& trait) {
  failErrno(path, "cannot be replaced, for " + trait + " cannot be kept");
}

struct stat statusOf(const Descriptor& file, const std::string& path) {
  struct stat status {};
  if (fstat(file.number(), &status) != 0) failErrno(path, "cannot be read");
  return status;
}

void keepOwner(const struct stat& old, const Descriptor& file, const std::string& path) {
  const auto made = statusOf(file, path);
  if (made.st_uid == old.st_uid && made.st_gid == old.st_gid) return;
  if (fchown(file.number(), old.st_uid, old.st_gid) == 0) return;
  failToKeep(path, "its owner and group (" + std::to_string(old.st_uid) + ":" +
                       std::to_string(old.st_gid) + ")");
}

/// Calls a function of the system that fills a buffer, for its size first. Nothing where it fails
/// and `isAbsence` says that there is nothing to have.
template <class Fill>
bool fill(std::vector<char>& buffer, Fill&& fillBytes) {
  for (;;) {
    const ssize_t size = fillBytes(nullptr, 0);
    if (size < 0) return false;
    buffer.resize(static_cast<std::size_t>(size));
    if (size == 0) return true;
    const ssize_t got = fillBytes(buffer.data(), buffer.size());
    if (got < 0 && errno == ERANGE) continue; // grown since
    if (got < 0) return false;
    buffer.resize(static_cast<std::size_t>(got));
    return true;
  }
}

/// The user's own attributes and access control lists; the others are the system's.
bool isKept(std::string_view name) {
  return name.starts_with("user.") || name.starts_with("system.");
}

using Names = std::vector<std::string>;

/// None on a file system that has no attributes.
Names attributesOf(const Descriptor& file, const std::string& path) {
  std::vector<char> list;
  const int fd = file.number();
  if (!fill(list, [fd](char* to, std::size_t size) { return flistxattr(fd, to, size); })) {
    if (errno == ENOTSUP) return {};
    failToKeep(path, "the list of its extended attributes");
  }
  Names names;
  for (std::size_t at = 0; at < list.size(); at += names.back().size() + 1) {
    names.emplace_back(list.data() + at);
  }
  std::erase_if(names, [](const std::string& name) { return !isKept(name); });
  return names;
}

void keepAttribute(const std::string& name, const Descriptor& old, const Descriptor& file,
                   const std::string& path) {
  std::vector<char> value;
  const auto read = [&](char* to, std::size_t size) {
    return fgetxattr(old.number(), name.c_str(), to, size);
  };
  if (!fill(value, read) ||
      fsetxattr(file.number(), name.c_str(), value.data(), value.size(), 0) != 0) {
    failToKeep(path, "its extended attribute " + name);
  }
}

/// A new file may have got a list from its folder that the old one is without.
void keepAttributes(const Descriptor& old, const Descriptor& file, const std::string& path) {
  const Names names = attributesOf(old, path);
  for (const auto& name : attributesOf(file, path)) {
    if (std::find(names.begin(), names.end(), name) != names.end()) continue;
    if (fremovexattr(file.number(), name.c_str()) != 0) failToKeep(path, "the lack of " + name);
  }
  for (const auto& name : names) keepAttribute(name, old, file, path);
}

} // namespace

void keepTraits(const Descriptor& old, const Descriptor& file, const std::string& path) {
  const auto status = statusOf(old, path);
  keepOwner(status, file, path);
  keepAttributes(old, file, path);
  if (fchmod(file.number(), status.st_mode & permissionBits) != 0) failToKeep(path, "its mode");
}

} // namespace sources::snapshot
