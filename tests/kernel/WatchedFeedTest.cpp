#include "sources/kernel/WatchedFeed.h"

#include <gtest/gtest.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

namespace {

using namespace sources::kernel;

/// Dumps two datagrams, of three objects and of one, and gives up when it is told to.
struct TwoDatagrams : Feed {
  void follow(unsigned) override {}
  DumpEnd dump(const Request&, const TakeMessage& take,
               const std::function<bool()>& keepsOn) override {
    for (int i = 0; i < 3; ++i) take({});
    if (!keepsOn()) return {.complete = false};
    take({});
    keepsOn();
    return {};
  }
  bool drain(const TakeNotification&) override { return false; }
};

struct Heard : sources::Progress {
  void at(std::string_view what, std::uint64_t done, std::uint64_t all) override {
    text += std::string(what) + " " + std::to_string(done) + "/" + std::to_string(all) + "\n";
  }
  std::string text;
};

constexpr Request routes{"IPv4 routes", RTM_GETROUTE, AF_INET, sizeof(rtmsg)};

TEST(WatchedFeed, CountsObjectsADatagramAtATime) {
  TwoDatagrams kernel;
  Heard heard;
  WatchedFeed watched(kernel, heard);
  int taken = 0;
  const auto take = [&](Bytes) { ++taken; };
  EXPECT_TRUE(watched.dump(routes, take, [] { return true; }).complete);
  EXPECT_EQ(taken, 4);
  EXPECT_EQ(heard.text, "reading the kernel's IPv4 routes 3/0\n"
                        "reading the kernel's IPv4 routes 4/0\n");
  auto table = routes;
  table.attributeValue = RT_TABLE_LOCAL;
  heard.text.clear();
  watched.dump(table, take, [] { return true; });
  watched.dump(table, take, [] { return true; });
  EXPECT_EQ(heard.text, "reading the kernel's IPv4 routes 7/0\n"
                        "reading the kernel's IPv4 routes 8/0\n"
                        "reading the kernel's IPv4 routes 3/0\n"
                        "reading the kernel's IPv4 routes 4/0\n");
  EXPECT_FALSE(watched.dump(routes, take, [] { return false; }).complete);
  EXPECT_FALSE(watched.drain([](const nlmsghdr&, Bytes) {}));
}

} // namespace
