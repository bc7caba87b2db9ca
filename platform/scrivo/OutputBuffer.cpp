#include "OutputBuffer.h"

#include "scrivo/Exception.h"
#include "scrivo/Interrupt.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace scrivo {

namespace {

/// Waits until the descriptor takes bytes again. It looks up every 100 ms, for a signal that comes
/// just ahead of the call would not end it.
void waitUntilWritable(int fd) {
  pollfd descriptor{fd, POLLOUT, 0};
  ::poll(&descriptor, 1, 100);
}

} // namespace

void OutputBuffer::fill(char byte, std::size_t count) {
  while (count > 0) {
    if (room() == 0) flush();
    const std::size_t piece = std::min(count, room());
    std::memset(next_, byte, piece);
    next_ += piece;
    count -= piece;
  }
}

void OutputBuffer::putInPieces(const char* bytes, std::size_t length) {
  while (length > 0) {
    if (room() == 0) flush();
    const std::size_t piece = std::min(length, room());
    std::memcpy(next_, bytes, piece);
    next_ += piece;
    bytes += piece;
    length -= piece;
  }
}

void OutputBuffer::takeCopy() {
  if (!copy_) return;
  copy_->append(copied_, static_cast<const char*>(next_));
  copied_ = next_;
}

void OutputBuffer::flush() {
  takeCopy();
  const char* at = bytes_;
  const char* const end = next_;
  copied_ = next_ = bytes_;
  if (!isOpen()) return;
  while (at != end) {
    if (interruptRequested()) interrupt();
    at += writeSome(at, static_cast<std::size_t>(end - at));
  }
}

/// One write. \return the bytes that it took, none if it should be tried again.
std::size_t OutputBuffer::writeSome(const char* bytes, std::size_t length) {
  if (output_) return output_->append(bytes, length), length;
  const ssize_t written = ::write(fd_, bytes, length);
  if (written >= 0) return static_cast<std::size_t>(written);
  const int error = errno;
  if (error == EINTR) return 0;
  if (error == EAGAIN) return waitUntilWritable(fd_), 0;
  fail();
  if (error == EPIPE) throw sigintException("the reader has gone away");
  throw WriteException(error);
}

void OutputBuffer::interrupt() {
  if (!isOpen()) return;
  fail();
  throw sigintException("interrupted by the user");
}

void OutputBuffer::fail() {
  state_ = State::failed;
  copied_ = next_ = bytes_;
}

} // namespace scrivo
