// What a printer writes, as a string: `capture(scrivo::modelFormat, [](scrivo::Printer& p) {...})`.
#pragma once

#include "scrivo/Printer.h"

#include <string>
#include <sys/mman.h>
#include <unistd.h>

/// A file in memory that a printer may write to.
class Sink {
 public:
  Sink() : fd_(memfd_create("sink", 0)) {}
  ~Sink() { ::close(fd_); }
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;

  int fd() const { return fd_; }
  std::string text() const {
    std::string all(static_cast<std::size_t>(lseek(fd_, 0, SEEK_END)), '\0');
    const ssize_t got = pread(fd_, all.data(), all.size(), 0);
    return got == static_cast<ssize_t>(all.size()) ? all : "cannot read the sink";
  }

 private:
  int fd_;
};

template <class Walk>
std::string capture(unsigned format, Walk&& walk) {
  Sink sink;
  {
    scrivo::Printer printer(sink.fd(), format);
    walk(printer);
    printer.close();
  }
  return sink.text();
}
