// A kernel whose dumps somebody waits for.
#pragma once

#include "sources/Progress.h"
#include "sources/kernel/Netlink.h"

#include <string>

namespace sources::kernel {

/// Hands all on to another feed, and tells behind each datagram how many objects of a dump came.
class WatchedFeed final : public Feed {
 public:
  WatchedFeed(Feed& feed, Progress& progress) : feed_(feed), progress_(progress) {}

  void follow(unsigned group) override { feed_.follow(group); }
  DumpEnd dump(const Request& request, const TakeMessage& take,
               const std::function<bool()>& keepsOn) override {
    const std::string what = std::string("reading the kernel's ") + request.what;
    std::uint64_t count = 0;
    const auto takeCounted = [&](Bytes payload) {
      ++count;
      take(payload);
    };
    return feed_.dump(request, takeCounted, [&] {
      progress_.at(what, count, 0);
      return keepsOn();
    });
  }
  bool drain(const TakeNotification& take) override { return feed_.drain(take); }

 private:
  Feed& feed_;
  Progress& progress_;
};

} // namespace sources::kernel
