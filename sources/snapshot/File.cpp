#include "sources/snapshot/File.h"

#include "FileError.h"
#include "sources/snapshot/Descriptor.h"

#include <algorithm>
#include <cstring>
#include <sys/mman.h>
#include <sys/stat.h>

namespace sources::snapshot {

namespace {

constexpr std::size_t leastCapacity = 64 * 1024;

[[noreturn]] void failToRead(const std::string& path) {
  failErrno(inputName(path), "cannot be read");
}

[[noreturn]] void failTooLong(const std::string& path, std::size_t most) {
  constexpr std::size_t gigabyte = 1 << 30;
  const std::string size = most < gigabyte ? std::to_string(most) + " bytes"
                                           : std::to_string((most + 1) / gigabyte) + " GB";
  throw SourceError(inputName(path) + ": found more than " + size + " of text, expected less");
}

Descriptor openToRead(const std::string& path) {
  Descriptor file = path == "-" ? copyOf(STDIN_FILENO) : openFile(path, O_RDONLY);
  if (!file.isOpen()) failToRead(path);
  return file;
}

/// The bytes that a regular file still has; of all else nothing is known.
std::size_t bytesAhead(const Descriptor& file, const std::string& path) {
  struct stat status {};
  if (fstat(file.number(), &status) != 0) failToRead(path);
  if (!S_ISREG(status.st_mode)) return 0;
  const off_t at = lseek(file.number(), 0, SEEK_CUR);
  return static_cast<std::size_t>(std::max<off_t>(status.st_size - std::max<off_t>(at, 0), 0));
}

void growOrFail(FileText& text, std::size_t capacity, const std::string& path) {
  if (!text.grow(capacity)) failToRead(path);
}

/// Returns the bytes read; 0 at the end.
std::size_t readSome(const Descriptor& file, FileText& text, const std::string& path) {
  for (;;) {
    const std::size_t room = text.capacity() - text.text().size();
    const ssize_t count = read(file.number(), text.end(), room);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (!isWorthRetry(file.number(), POLLIN)) failToRead(path);
  }
}

} // namespace

/// Asks for large pages where there is room for some: a fresh page costs more than to fill it.
void useLargePages(char* bytes, std::size_t size) {
  constexpr std::size_t pageSize = 4096;
  const std::size_t ahead = -reinterpret_cast<std::uintptr_t>(bytes) % pageSize;
  if (size > ahead) madvise(bytes + ahead, size - ahead, MADV_HUGEPAGE);
}

// The system moves large blocks without copying them.
bool FileText::grow(std::size_t capacity) {
  auto* const bytes = static_cast<char*>(std::realloc(bytes_.get(), capacity + padding_));
  if (!bytes) return false;
  static_cast<void>(bytes_.release());
  bytes_.reset(bytes);
  useLargePages(bytes, capacity);
  capacity_ = capacity;
  return true;
}

void FileText::finish() { std::memset(end(), 0, padding_); }

FileText readFile(const std::string& path, std::size_t padding, std::size_t most) {
  const Descriptor file = openToRead(path);
  const std::size_t ahead = bytesAhead(file, path);
  if (ahead > most) failTooLong(path, most);
  FileText text(padding);
  // One byte more than there should be shows whether the end is there.
  growOrFail(text, std::min(std::max(ahead, leastCapacity), most) + 1, path);
  while (const std::size_t count = readSome(file, text, path)) {
    text.add(count);
    if (text.text().size() > most) failTooLong(path, most);
    if (text.text().size() < text.capacity()) continue;
    growOrFail(text, std::min(2 * text.capacity(), most + 1), path);
  }
  text.finish();
  return text;
}

} // namespace sources::snapshot
