// Whole files, read at once.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace sources::snapshot {

/// The bytes of a file, with zero bytes behind them.
class FileText {
 public:
  /// Without a byte yet, and without room for one.
  explicit FileText(std::size_t padding) : padding_(padding) {}

  std::string_view text() const { return {bytes_.get(), size_}; }
  std::size_t capacity() const { return capacity_; }

  /// Where the next bytes go, up to the capacity; `add` tells how many came.
  char* end() { return bytes_.get() + size_; }
  void add(std::size_t count) { size_ += count; }
  /// Makes room; false, with the system's `errno`, when there is no memory.
  [[nodiscard]] bool grow(std::size_t capacity);
  /// Clears the padding: the text is whole.
  void finish();

 private:
  struct Free {
    void operator()(char* bytes) const { std::free(bytes); }
  };
  std::unique_ptr<char, Free> bytes_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
  std::size_t padding_;
};

/// The most bytes that are read of a file. Fifty million routes take less: more is a mistake.
inline constexpr std::size_t longestText = 0xffffffff;

/// The bytes of a file, or of the standard input for "-", with `padding` zero bytes behind them.
/// Any readable file will do, a pipe too. Raises `SourceError` with the path and the system's text,
/// and for a file longer than `most`, which is read no further.
FileText readFile(const std::string& path, std::size_t padding = 0, std::size_t most = longestText);

} // namespace sources::snapshot
