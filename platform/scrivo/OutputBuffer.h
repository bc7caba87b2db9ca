// The bytes between the printer and its descriptor: one buffer of fixed size that writes itself out
// when it is full, so that memory never grows with the output. Or between the printer and a string
// of its caller, which grows.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace scrivo {

/// Bytes on their way to a descriptor, which stays the caller's. Whatever writes may throw
/// sigintException or WriteException; from then on the buffer swallows what it is given.
class OutputBuffer {
 public:
  static constexpr std::size_t size = 64 * 1024;
  /// What `reserve` may be asked for.
  static constexpr std::size_t reserveLimit = 4096;

  explicit OutputBuffer(int fd) : fd_(fd), next_(bytes_) {}
  /// Appends to a string in place of writing.
  explicit OutputBuffer(std::string& output) : output_(&output), next_(bytes_) {}
  OutputBuffer(const OutputBuffer&) = delete;
  OutputBuffer& operator=(const OutputBuffer&) = delete;

  void put(char byte) {
    if (room() == 0) flush();
    *next_++ = byte;
  }
  void put(const char* bytes, std::size_t length) {
    if (length > room()) return putInPieces(bytes, length);
    std::memcpy(next_, bytes, length);
    next_ += length;
  }
  void put(std::string_view text) {
    if (!text.empty()) put(text.data(), text.size()); // memcpy takes no null pointer
  }
  void fill(char byte, std::size_t count);

  /// Room for `count` bytes, at most `reserveLimit`; `commit` tells where the writing ended.
  char* reserve(std::size_t count) {
    if (count > room()) flush();
    return next_;
  }
  void commit(char* end) { next_ = end; }

  /// Appends what is put from here on to `copy` too, until `endCopy`. A flush in between is no
  /// matter.
  void beginCopy(std::string& copy) {
    copy_ = &copy;
    copied_ = next_;
  }
  void endCopy() {
    takeCopy();
    copy_ = nullptr;
  }

  int fullness() const { return static_cast<int>((size - room()) * 100 / size); }
  void flush();
  /// The end of the output after the last flush.
  void close() { state_ = State::closed; }
  /// Drops what is buffered and throws sigintException, if the output has not ended already.
  void interrupt();

  bool isOpen() const { return state_ == State::open; }
  bool isClosed() const { return state_ == State::closed; }

 private:
  enum class State { open, failed, closed };

  std::size_t room() const { return static_cast<std::size_t>(bytes_ + size - next_); }
  void putInPieces(const char* bytes, std::size_t length);
  std::size_t writeSome(const char* bytes, std::size_t length);
  void takeCopy();
  void fail();

  int fd_ = -1;
  std::string* output_ = nullptr; ///< null where a descriptor takes the bytes
  State state_ = State::open;
  char* next_;
  std::string* copy_ = nullptr;
  const char* copied_ = nullptr; ///< up to where the copy goes
  char bytes_[size];
};

} // namespace scrivo
