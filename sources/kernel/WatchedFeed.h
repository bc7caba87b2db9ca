// A kernel whose dumps somebody waits for.
#pragma once

#include "sources/Progress.h"
#include "sources/kernel/Netlink.h"

#include <string>

namespace sources::kernel {

/// Hands all on to another feed, and tells behind each datagram how many objects came. Those of
/// several tables of routes that are asked for one by one are counted on.
class WatchedFeed final : public Feed {
 public:
  WatchedFeed(Feed& feed, Progress& progress) : feed_(feed), progress_(progress) {}

  void follow(unsigned group) override { feed_.follow(group); }
  DumpEnd dump(const Request& request, const TakeMessage& take,
               const std::function<bool()>& keepsOn) override {
    if (request.what != last_.what || request.attributeValue == last_.attributeValue) count_ = 0;
    last_ = request;
    const auto takeCounted = [&](Bytes payload) {
      ++count_;
      take(payload);
    };
    const std::string what = std::string("reading the kernel's ") + request.what;
    return feed_.dump(request, takeCounted, [&] {
      progress_.at(what, count_, 0);
      return keepsOn();
    });
  }
  bool drain(const TakeNotification& take) override { return feed_.drain(take); }

 private:
  Feed& feed_;
  Progress& progress_;
  Request last_{};
  std::uint64_t count_ = 0;
};

} // namespace sources::kernel
