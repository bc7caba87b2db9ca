// How the printer's bytes reach the descriptor, and what ends them early.
#include "Capture.h"
#include "support/Expect.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <thread>

namespace {

using scrivo::Printer;

/// The interrupt is one of the process: each test leaves it cleared, and writes that find no reader
/// report an error.
class Output : public testing::Test {
 protected:
  Output() { std::signal(SIGPIPE, SIG_IGN); }
  ~Output() override { scrivo::clearInterrupt(); }

  Sink sink;
};

struct Pipe {
  Pipe() { EXPECT_EQ(pipe(ends), 0); }
  ~Pipe() {
    closeReader();
    ::close(ends[1]);
  }
  void closeReader() {
    if (ends[0] >= 0) ::close(std::exchange(ends[0], -1));
  }
  int writer() const { return ends[1]; }
  int ends[2] = {-1, -1};
};

/// Reads a pipe to its end.
std::string readAll(int fd) {
  std::string all;
  char piece[10'000];
  for (ssize_t got; (got = read(fd, piece, sizeof piece)) > 0;) {
    all.append(piece, static_cast<std::size_t>(got));
  }
  return all;
}

TEST_F(Output, FillsTheBufferAndEmptiesIt) {
  Printer printer(sink.fd(), scrivo::textFormat, true, false, true, 0);
  EXPECT_EQ(printer.fullness(), 0);
  printer.addFrills("%*s", 33 * 1024, "");
  EXPECT_EQ(printer.fullness(), 51);
  printer.addFrills("%*s", 31 * 1024, "");
  EXPECT_EQ(printer.fullness(), 100);
  EXPECT_EQ(sink.text().size(), 0u);
  printer.addFrills("x");
  EXPECT_EQ(sink.text().size(), 64u * 1024);
  printer.ioflush();
  EXPECT_EQ(printer.fullness(), 0);
  EXPECT_EQ(sink.text().size(), 64u * 1024 + 1);
}

TEST_F(Output, IsWrittenAtTheEndOnceAndForAll) {
  {
    Printer printer(sink.fd(), scrivo::textFormat, true, false, true, 0);
    printer.addFrills("closed ");
    printer.close();
    printer.close();
  }
  { Printer(sink.fd(), scrivo::textFormat, true, false, true, 0).addFrills("left "); }
  try {
    Printer printer(sink.fd(), scrivo::textFormat, true, false, true, 0);
    printer.addFrills("thrown");
    throw 1;
  } catch (int) {
  }
  EXPECT_EQ(sink.text(), "closed left thrown");
}

TEST_F(Output, AnInterruptDropsWhatIsNotWritten) {
  Printer printer(sink.fd(), scrivo::textFormat, true, false, true, 0);
  printer.addFrills("written");
  printer.ioflush();
  printer.addFrills("dropped");
  scrivo::requestInterrupt();
  EXPECT_EQ(support::messageOf<scrivo::sigintException>([&] { printer.addFrills("x"); }),
            "interrupted by the user");
  printer.addFrills("silent");
  printer.startDict("silent");
  printer.close();
  scrivo::clearInterrupt();
  {
    Printer destroyed(sink.fd(), scrivo::textFormat, true, false, true, 0);
    destroyed.addFrills("dropped");
    scrivo::requestInterrupt();
  }
  EXPECT_EQ(sink.text(), "written");
}

TEST_F(Output, EachCallSeesTheInterrupt) {
  using Call = void (*)(Printer&, scrivo::IntAttrInfo&);
  const Call calls[] = {
      [](Printer& p, scrivo::IntAttrInfo&) { p.start(); },
      [](Printer& p, scrivo::IntAttrInfo&) { p.end(); },
      [](Printer& p, scrivo::IntAttrInfo&) { p.startDict("d"); },
      [](Printer& p, scrivo::IntAttrInfo& i) { p.startDictEntry(i); },
      [](Printer& p, scrivo::IntAttrInfo&) { p.startList("l"); },
      [](Printer& p, scrivo::IntAttrInfo& i) { p.addAttributes("%d", 1, i.getArg()); },
      [](Printer& p, scrivo::IntAttrInfo&) { p.fullness(); },
      [](Printer& p, scrivo::IntAttrInfo&) { p.ioflush(); },
      [](Printer& p, scrivo::IntAttrInfo&) { p.close(); },
  };
  for (const unsigned format : {1u, 2u}) {
    for (const Call call : calls) {
      Printer printer(sink.fd(), format, true, false, true, 0);
      scrivo::IntAttrInfo number(printer, "n");
      number.setValue(1);
      scrivo::requestInterrupt();
      EXPECT_THROW(call(printer, number), scrivo::sigintException);
      scrivo::clearInterrupt();
      EXPECT_NO_THROW(call(printer, number));
    }
  }
  EXPECT_EQ(sink.text(), "");
}

TEST_F(Output, AReaderThatLeavesEndsIt) {
  Pipe pipe;
  pipe.closeReader();
  Printer printer(pipe.writer(), scrivo::textFormat, true, false, true, 0);
  printer.addFrills("x");
  EXPECT_EQ(support::messageOf<scrivo::sigintException>([&] { printer.ioflush(); }),
            "the reader has gone away");
  EXPECT_NO_THROW(printer.ioflush());
}

TEST_F(Output, AFailedWriteIsToldOnce) {
  const int full = open("/dev/full", O_WRONLY);
  Printer printer(full, scrivo::modelFormat, true, false, true, 0);
  printer.startDict("d");
  EXPECT_EQ(support::messageOf<scrivo::WriteException>([&] { printer.ioflush(); }),
            "cannot write the output: No space left on device");
  EXPECT_NO_THROW(printer.endList()); // not even the nesting counts any more
  EXPECT_NO_THROW(printer.close());
  Printer another(full, scrivo::textFormat, true, false, true, 0);
  another.addFrills("x");
  EXPECT_EQ(support::messageOf<Lumo::ErrnoException>([&] { another.close(); }),
            "cannot write the output: No space left on device");
  { Printer(full, scrivo::textFormat, true, false, true, 0).addFrills("x"); } // does not throw
  ::close(full);
}

TEST_F(Output, WaitsForASlowReader) {
  Pipe pipe;
  fcntl(pipe.writer(), F_SETFL, O_NONBLOCK);
  std::string got;
  std::thread reader([&] { got = readAll(pipe.ends[0]); });
  {
    Printer printer(pipe.writer(), scrivo::textFormat, true, false, true, 0);
    for (int i = 0; i < 100'000; ++i) printer.addFrills("%d\n", i);
    printer.close();
  }
  ::close(std::exchange(pipe.ends[1], -1));
  reader.join();
  EXPECT_EQ(got.size(), 10u * 2 + 90 * 3 + 900 * 4 + 9000 * 5 + 90000 * 6);
  EXPECT_EQ(got.substr(got.size() - 12), "99998\n99999\n");
}

/// A signal ends the wait for a reader that does not read.
void expectInterruptWhileWaiting(int writerFlags) {
  Pipe pipe;
  fcntl(pipe.writer(), F_SETFL, writerFlags);
  struct sigaction action {};
  action.sa_handler = [](int) { scrivo::requestInterrupt(); };
  sigaction(SIGALRM, &action, nullptr); // without SA_RESTART
  const itimerval soon{{0, 10'000}, {0, 10'000}};
  setitimer(ITIMER_REAL, &soon, nullptr);
  Printer printer(pipe.writer(), scrivo::textFormat, true, false, true, 0);
  EXPECT_THROW(printer.addFrills("%*s", 10'000'000, ""), scrivo::sigintException);
  const itimerval never{};
  setitimer(ITIMER_REAL, &never, nullptr);
  scrivo::clearInterrupt();
}

TEST_F(Output, ASignalEndsABlockedWrite) { expectInterruptWhileWaiting(0); }
TEST_F(Output, ASignalEndsAWaitForTheReader) { expectInterruptWhileWaiting(O_NONBLOCK); }

} // namespace
