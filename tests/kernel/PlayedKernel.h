// A kernel that is played, and a follower of it: each dump shows objects, between which things are
// notified.
#pragma once

#include "kernel/Message.h"
#include "kernel/Shown.h"
#include "sources/kernel/Device.h"
#include "sources/kernel/Follower.h"

#include <gtest/gtest.h>
#include <linux/if.h>
#include <linux/if_addr.h>
#include <linux/nexthop.h>

#include <deque>

namespace kernel_test {

using namespace sources::kernel;
using std::chrono::milliseconds;

/// Something that happens: an object of a dump, or a notification.
struct Step {
  std::uint16_t told = 0; ///< the type of a notification; 0 for an object
  std::uint16_t flags = 0;
  Message message;
};

inline Step told(std::uint16_t type, Step object, std::uint16_t flags = 0) {
  return {type, flags, std::move(object.message)};
}

enum class Works { up, withoutCarrier, down };

inline Step link(int index, const char* name, Works works = Works::up) {
  ifinfomsg header{};
  header.ifi_index = index;
  if (works != Works::down) header.ifi_flags = IFF_UP;
  if (works == Works::up) header.ifi_flags |= IFF_RUNNING | IFF_LOWER_UP;
  return {0, 0, Message(header).add(IFLA_IFNAME, text(name))};
}

inline Step address(int interface, const char* own, std::uint8_t length) {
  const auto bytes = ip(own);
  ifaddrmsg header{};
  header.ifa_family = bytes.size() == 4 ? AF_INET : AF_INET6;
  header.ifa_prefixlen = length;
  header.ifa_index = static_cast<std::uint32_t>(interface);
  return {0, 0, Message(header).add(IFA_ADDRESS, bytes).add(IFA_LOCAL, bytes)};
}

inline Step nexthop(std::uint32_t id, int interface) {
  nhmsg header{};
  header.nh_family = AF_INET;
  return {0, 0,
          Message(header).add(NHA_ID, id).add(NHA_OIF, interface).add(NHA_GATEWAY, ip("10.0.0.9"))};
}

struct To {
  const char* gateway = nullptr;
  int interface = 1;
  bool dead = false; ///< among several; the kernel does not use it
};

/// A static route of table main; its fields are set behind it.
struct RouteStep {
  const char* prefix;
  std::uint8_t length;
  std::vector<To> hops = {{}};
  std::uint32_t metric = 0;
  std::uint32_t nexthop = 0;
  const char* source = nullptr;
  std::uint8_t type = RTN_UNICAST;
  std::uint32_t table = RT_TABLE_MAIN;
  std::uint8_t protocol = RTPROT_STATIC;

  operator Step() const {
    const auto bytes = ip(prefix);
    rtmsg header{};
    header.rtm_family = bytes.size() == 4 ? AF_INET : AF_INET6;
    header.rtm_dst_len = length;
    header.rtm_type = type;
    header.rtm_protocol = protocol;
    Message message(header);
    message.add(RTA_TABLE, table).add(RTA_DST, bytes).add(RTA_PRIORITY, metric);
    if (nexthop) message.add(RTA_NH_ID, nexthop);
    if (source) message.add(RTA_PREFSRC, ip(source));
    if (hops.size() > 1) {
      message.add(RTA_MULTIPATH, rows());
    } else if (!nexthop) {
      addHop(message, hops[0]);
      message.add(RTA_OIF, hops[0].interface);
    }
    return {0, 0, message};
  }

 private:
  static void addHop(Message& message, const To& hop) {
    if (hop.gateway) message.add(RTA_GATEWAY, ip(hop.gateway));
  }
  Message rows() const {
    Message all;
    for (const To& hop : hops) {
      rtnexthop header{};
      header.rtnh_ifindex = hop.interface;
      header.rtnh_flags = hop.dead ? RTNH_F_DEAD : 0;
      Message row(header);
      addHop(row, hop);
      row.bytes()[0] = static_cast<std::byte>(row.bytes().size()); // rtnh_len
      all.then(row);
    }
    return all;
  }
};
using R = RouteStep;

/// A kernel that plays scripts: for the tables by name, what each of their dumps shows. The last
/// script of a table serves all further dumps.
class PlayedKernel final : public Feed {
 public:
  using Script = std::vector<Step>;

  void follow(unsigned) override {}
  DumpEnd dump(const Request& request, const TakeMessage& take,
               const std::function<bool()>& keepsOn) override {
    now += milliseconds(100);
    dumps += std::string(request.what) +
             (request.attribute == RTA_TABLE ? " " + std::to_string(request.attributeValue) : "") +
             "; ";
    if (request.type == RTM_GETNEXTHOP && request.attribute && refusesCounts) {
      pending = *refusesCounts;
      keepsOn();
      return {.known = false};
    }
    auto& script = scripts[request.what];
    if (script.empty()) return {};
    const Script steps = script.front();
    if (script.size() > 1) script.pop_front();
    for (const Step& step : steps) {
      if (step.told) {
        pending.push_back(step);
      } else {
        take(step.message.bytes());
      }
      if (!keepsOn()) return {true, false, false};
    }
    return {true, interrupted, true};
  }
  bool drain(const TakeNotification& take) override {
    for (const Step& step : std::exchange(pending, {})) {
      nlmsghdr header{};
      header.nlmsg_type = step.told;
      header.nlmsg_flags = step.flags;
      take(header, step.message.bytes());
    }
    return !std::exchange(losesOnce, false);
  }

  std::map<std::string, std::deque<Script>> scripts;
  std::vector<Step> pending;
  std::string dumps; ///< that were asked for
  bool losesOnce = false;
  std::optional<Script> refusesCounts; ///< of nexthop groups; what is told meanwhile
  bool interrupted = false;
  std::chrono::steady_clock::time_point now;
};

class FollowerTest : public testing::Test {
 protected:
  FollowerTest() {
    kernel.scripts["interfaces"] = {{link(1, "eth1"), link(2, "eth2")}};
    needs.neighbours = needs.nexthopGroups = false;
  }

  /// Reads; the routes that are there then.
  Routes read() {
    Follower follower(kernel, needs, [this] { return kernel.now; });
    follower.read(std::chrono::seconds(2));
    moved = follower.moved();
    return showRoutes(makeDevice(follower.take()));
  }
  /// The hops of 10.0.0.0/8 when these things are told of a table that has it through `before`. The
  /// further dump shows nothing, which proves nothing: something else moves.
  std::string after(PlayedKernel::Script before, const std::vector<Step>& events) {
    before.insert(before.end(), events.begin(), events.end());
    kernel.scripts["IPv4 routes"] = {before, {told(RTM_NEWROUTE, RouteStep{"99.0.0.0", 8})}};
    const auto routes = read();
    const auto found = routes.find("default 10.0.0.0/8");
    return found == routes.end() ? "none" : found->second.substr(found->second.find('|') + 2);
  }

  PlayedKernel kernel;
  sources::Needs needs;
  std::vector<std::string> moved;
};

} // namespace kernel_test
