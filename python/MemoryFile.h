// A file in memory: it takes what is written to a descriptor and gives it as one text.
#pragma once

#include <cstddef>
#include <string_view>

namespace rova_python {

/// All calls raise std::system_error when the system refuses.
class MemoryFile {
 public:
  /// A new file that begins with a text; more is written to its end.
  explicit MemoryFile(std::string_view beginning);
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  int descriptor() const { return descriptor_; }
  /// How many bytes it holds.
  std::size_t length() const;
  /// Its bytes, zeros behind them up to `length`, to be called once. Writing to them changes the
  /// text that was given out alone. They live as long as the file.
  char* map(std::size_t length);

 private:
  int descriptor_;
  void* bytes_ = nullptr;
  std::size_t mapped_ = 0;
};

} // namespace rova_python
