// A device's state from decoded messages, without a kernel: what its tests share.
#pragma once

#include "kernel/Shown.h"
#include "sources/kernel/Device.h"

#include <deque>
#include <gtest/gtest.h>
#include <sys/socket.h>

namespace kernel_test {

using namespace sources::kernel;

inline Kesh::IpGenAddr addr(std::string_view text) {
  return text.empty() ? Kesh::IpGenAddr() : Kesh::IpGenAddr::parse(text).value();
}

inline Hop hop(std::string_view gateway, std::uint32_t interface = 1, std::uint32_t weight = 1) {
  Hop made;
  made.gateway = addr(gateway);
  made.interface = interface;
  made.weight = weight;
  return made;
}

/// A static unicast route of table main, to be changed.
inline RouteMessage route(const char* destination, std::uint8_t length,
                          std::vector<Hop> hops = {}) {
  RouteMessage message;
  message.destination = addr(destination);
  message.family = message.destination.af() == Kesh::AddressFamily::ip4 ? AF_INET : AF_INET6;
  message.length = length;
  message.type = RTN_UNICAST;
  message.protocol = RTPROT_STATIC;
  message.table = RT_TABLE_MAIN;
  message.hops = std::move(hops);
  return message;
}

inline void enterRoute(const RouteMessage& message, KernelState& kernel) {
  if (!isRow(message)) return;
  if (message.family == AF_INET) {
    kernel.routes.push_back(rowOf<sources::kernel::Ip4>(message, kernel.hopLists));
  } else {
    kernel.routes6.push_back(rowOf<sources::kernel::Ip6>(message, kernel.hopLists));
  }
}

/// The message with what its key has besides the destination.
inline RouteMessage with(RouteMessage message, std::uint32_t metric, std::uint8_t tos = 0,
                         std::uint32_t table = RT_TABLE_MAIN) {
  message.metric = metric;
  message.tos = tos;
  message.table = table;
  return message;
}

/// The configured routes with their hops, as one line.
inline std::string showConfig(const Lumo::Ptr<Routing::ConfigGen>& config) {
  std::map<std::string, std::string> lines;
  config->route.forEach([&](const Routing::RouteKey& key, const Lumo::Ptr<Routing::Route>& route) {
    std::string& line = lines[key.prefix.stringValue().str()];
    line = "[" + std::to_string(key.preference) + "]";
    if (route->routeType == Routing::RouteType::drop) line += " drop";
    route->via.forEach([&](const Routing::Via& via, bool) {
      line += " " + via.hop.stringValue().str() + "@" + via.intfId.stringValue().str();
    });
  });
  std::string out;
  for (const auto& [prefix, line] : lines) out += prefix + line + "; ";
  return out;
}

/// Two links and what else a test enters.
class DeviceTest : public testing::Test {
 protected:
  DeviceTest() { kernel.links = {{1, "eth1", "", 0, 0}, {2, "eth2", "", 0, 0}}; }

  RouteMessage& add(RouteMessage message) { return messages.emplace_back(std::move(message)); }
  /// What the kernel has, with the messages.
  KernelState whole() const {
    KernelState entered = kernel;
    for (const RouteMessage& message : messages) enterRoute(message, entered);
    putInOrder(entered.routes);
    putInOrder(entered.routes6);
    return entered;
  }
  state::DeviceState device() const { return makeDevice(whole()); }

  Hop labelled(Hop to, std::initializer_list<std::uint32_t> labels) {
    LabelStack stack;
    stack.operationIs(Kesh::LabelAction::push);
    for (const std::uint32_t label : labels) stack.labelAppend(Kesh::MplsLabel(label));
    return pushing(to, stack);
  }
  Hop segmented(Hop to, std::initializer_list<const char*> travel) {
    Segments segments;
    for (const char* const segment : travel) segments.push_back(addr(segment).v6Addr());
    return pushing(to, segments);
  }
  Hop remote(Hop to, const char* end, std::uint32_t vni = 5) {
    return pushing(to, RemoteEnd{addr(end), vni});
  }

  KernelState kernel;
  std::deque<RouteMessage> messages;

 private:
  Hop pushing(Hop to, Encapsulation encapsulation) {
    to.encapsulation = kernel.encapsulations.enter(std::move(encapsulation));
    return to;
  }
};

} // namespace kernel_test
