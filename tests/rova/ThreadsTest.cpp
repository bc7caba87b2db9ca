// Threads of one host share a device and take turns by the activity lock, which a long walk gives
// up in its middle. The thread sanitizer watches them.
#include "support/Device.h"

#include <gtest/gtest.h>
#include <thread>

namespace {

using namespace support;

/// More routes than a walk takes in one turn.
constexpr int routes = 5000;

TEST(ThreadsTest, ListingsThatTakeTurnsAreEachWhole) {
  Lumo::enableThreadSafePointers = true;
  Device device;
  const FecId fec = device.fec({via("192.0.2.1", "Ethernet1"), via("192.0.2.5", "Ethernet2")});
  for (int i = 0; i < routes; ++i) {
    const auto prefix = "10." + std::to_string(i / 250) + "." + std::to_string(i % 250) + ".0/24";
    device.route(prefix, Routing::Fib::RouteType::staticRoute, fec);
  }
  const std::string expected = textOf(openSorter<Rova::Ip4Family>(device));
  std::string texts[4];
  {
    const Lumo::UnlockAnchor free(Lumo::ActivityUnlockAnchor::lock());
    std::vector<std::thread> threads;
    for (std::string& text : texts) {
      threads.emplace_back([&] {
        const Lumo::ActivityLockHold hold;
        text = textOf(openSorter<Rova::Ip4Family>(device));
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
  for (const std::string& text : texts) EXPECT_TRUE(text == expected);
  EXPECT_NE(expected.find("10.19.249.0/24"), std::string::npos);
  Lumo::enableThreadSafePointers = false;
}

} // namespace
