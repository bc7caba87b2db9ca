// The framing of a dump, and what happens when the kernel changes or refuses.
#include "sources/kernel/Netlink.h"
#include "kernel/Message.h"
#include "support/Expect.h"

#include <gtest/gtest.h>
#include <linux/nexthop.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <cerrno>

namespace kernel_test {
namespace {

using namespace sources::kernel;

constexpr std::uint32_t sequence = 5;
constexpr Request routes{"IPv4 routes", RTM_GETROUTE, AF_INET, sizeof(rtmsg)};
constexpr Request nexthops{"nexthop objects", RTM_GETNEXTHOP, AF_UNSPEC, 8};

Message part(unsigned type, int payload, unsigned flags = NLM_F_MULTI,
             std::uint32_t number = sequence) {
  nlmsghdr header{};
  header.nlmsg_len = sizeof header + sizeof payload;
  header.nlmsg_type = static_cast<std::uint16_t>(type);
  header.nlmsg_flags = static_cast<std::uint16_t>(flags);
  header.nlmsg_seq = number;
  return Message(header).then(Message(payload));
}

/// Feeds one datagram; the numbers that were taken, then "more" or "end".
std::string feed(DumpReader& reader, const Message& datagram) {
  std::string out;
  const bool more = reader.feed(datagram.bytes(), [&](Bytes payload) {
    out += std::to_string(readRecord<int>(payload).value_or(-1)) + " ";
  });
  return out + (more ? "more" : "end");
}

std::string errorOf(const Request& request, int error) {
  DumpReader reader(request, sequence);
  std::string fed;
  const std::string message = support::messageOf<sources::SourceError>(
      [&] { fed = feed(reader, part(NLMSG_ERROR, -error, 0)); });
  return message == "none" ? fed : message;
}

TEST(DumpReader, HandsOnObjectsUpToTheEnd) {
  DumpReader reader(routes, sequence);
  EXPECT_EQ(feed(reader, part(RTM_NEWROUTE, 1).then(part(RTM_NEWROUTE, 2))), "1 2 more");
  EXPECT_EQ(
      feed(reader, part(RTM_NEWROUTE, 3).then(part(NLMSG_DONE, 0)).then(part(RTM_NEWROUTE, 4))),
      "3 end");
  EXPECT_FALSE(reader.interrupted());
}

TEST(DumpReader, PassesOverOtherRequestsAndNotes) {
  DumpReader reader(routes, sequence);
  EXPECT_EQ(feed(reader, part(RTM_NEWROUTE, 1, NLM_F_MULTI, sequence - 1)
                             .then(part(NLMSG_NOOP, 2))
                             .then(part(NLMSG_DONE, 0, NLM_F_MULTI, sequence - 1))
                             .then(part(RTM_NEWROUTE, 3))),
            "3 more");
}

TEST(DumpReader, NoticesThatTheKernelChanged) {
  for (const unsigned type : {unsigned{RTM_NEWROUTE}, unsigned{NLMSG_DONE}}) {
    DumpReader reader(routes, sequence);
    feed(reader, part(type, 0, NLM_F_MULTI | NLM_F_DUMP_INTR));
    EXPECT_TRUE(reader.interrupted()) << type;
  }
}

TEST(DumpReader, RefusalNamesWhatAndWhy) {
  const std::string why = ": Operation not permitted";
  EXPECT_EQ(errorOf(routes, EPERM), "cannot dump the kernel's IPv4 routes" + why);
  EXPECT_EQ(errorOf(nexthops, EPERM), "cannot dump the kernel's nexthop objects" + why);
  EXPECT_EQ(errorOf(nexthops, EOPNOTSUPP), "end") << "a kernel without them has none";
  EXPECT_NE(errorOf(routes, EOPNOTSUPP), "end");
  EXPECT_NE(errorOf(routes, ENOENT), "end");
  DumpReader reader(routes, sequence), older(nexthops, sequence);
  EXPECT_TRUE(older.known());
  feed(older, part(NLMSG_DONE, -EINVAL)); // how the kernel refuses an attribute
  EXPECT_FALSE(older.known());
  EXPECT_THROW(feed(reader, part(NLMSG_DONE, -ENOMEM)), sources::SourceError);
}

TEST(DumpReader, DamagedDatagramsAreNeverReadBeyond) {
  const Message datagram = part(RTM_NEWROUTE, 1).then(part(RTM_NEWROUTE, 2));
  decodeDamaged(datagram.bytes(), [](Bytes bytes) {
    DumpReader reader(routes, sequence);
    try {
      reader.feed(bytes, [](Bytes payload) { readRecord<int>(payload); });
    } catch (const sources::SourceError&) { // a byte that was bent into a refusal
    }
  });
}

TEST(KernelFeed, DumpsAndSaysWhatTheKernelDoesNotKnow) {
  KernelFeed feed;
  int taken = 0;
  const auto take = [&](Bytes) { ++taken; };
  const auto always = [] { return true; };
  constexpr Request links{"interfaces", RTM_GETLINK, AF_UNSPEC, sizeof(ifinfomsg)};
  EXPECT_TRUE(feed.dump(links, take, always).complete);
  EXPECT_GE(taken, 1) << "every namespace has a loopback interface";
  taken = 0;
  constexpr std::uint16_t noAttribute = 200;
  constexpr Request strange{"nexthop objects", RTM_GETNEXTHOP, AF_UNSPEC,
                            sizeof(nhmsg),     noAttribute,    1};
  EXPECT_FALSE(feed.dump(strange, take, always).known);
  constexpr Request absent{"IPv4 routes", RTM_GETROUTE, AF_INET, sizeof(rtmsg), RTA_TABLE, 4711};
  EXPECT_TRUE(feed.dump(absent, take, always).complete) << "a table without routes is not there";
  EXPECT_EQ(taken, 0);
}

} // namespace
} // namespace kernel_test
