// What a user is told of a state.
#include "command/Notes.h"
#include "scrivo/Capture.h"

#include <gtest/gtest.h>

namespace {

using sources::Notes;

TEST(Notes, AreLinesOnStandardError) {
  using Lines = std::vector<std::string>;
  EXPECT_EQ(command::linesOf({}, "kernel"), Lines());
  EXPECT_EQ(command::linesOf({{"IPv6 routes", "neighbours"}, 0}, "kernel:blue"),
            Lines{"kernel:blue: moved while it was read: IPv6 routes, neighbours; some entries may "
                  "be missing or outdated"});
  EXPECT_EQ(command::linesOf({{}, 1}, "kernel"),
            Lines{"1 route of other metrics or TOS is not shown"});
  EXPECT_EQ(command::linesOf({{}, 37}, "kernel"),
            Lines{"37 routes of other metrics or TOS are not shown"});
}

/// A display with a document of its own.
std::string rendered(const Notes& notes, unsigned format) {
  const Sink file;
  command::renderWithNotes(notes, file.fd(), format, [&](int fd) {
    scrivo::Printer printer(fd, format);
    scrivo::UintAttrInfo count(printer, "count");
    count.setValue(7);
    printer.start();
    printer.addAttributes("count %u\n", 1, count.getArg());
    printer.end();
    printer.close();
  });
  return file.text();
}

TEST(Notes, AreTheFirstMemberOfADocument) {
  EXPECT_EQ(rendered({}, scrivo::modelFormat), "{\"count\":7}\n");
  EXPECT_EQ(rendered({{"IPv6 routes"}, 0}, scrivo::modelFormat),
            "{\"state\":{\"moved\":[\"IPv6 routes\"]},\"count\":7}\n");
  EXPECT_EQ(rendered({{"IPv4 routes", "interfaces"}, 2}, scrivo::modelFormat),
            "{\"state\":{\"moved\":[\"IPv4 routes\",\"interfaces\"],\"hiddenRoutes\":2},"
            "\"count\":7}\n");
  EXPECT_EQ(rendered({{"IPv6 routes"}, 0}, scrivo::textFormat), "count 7\n");
}

} // namespace
