// A writer without a kernel, for who measures what stands behind one: ROVA_FAST_WRITER="FILE RATE
// SECONDS" has it change, enter and take out so many routes a second. It is skipped otherwise.
#include "sources/database/Batch.h"
#include "sources/database/Lock.h"
#include "sources/snapshot/Snapshot.h"

#include <chrono>
#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <thread>
#include <unistd.h>

namespace {

using namespace sources::database;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::uint32_t prefixes = 100'000;
constexpr milliseconds commitEvery{50};

Kesh::Prefix prefixAt(std::uint64_t number) {
  return Kesh::pfx(0x0a000000 + static_cast<std::uint32_t>(number % prefixes) * 256, 24);
}

std::string firstState() {
  std::string text = R"({"rovaSnapshot": 1, "vrfs": {"default": {"routingStatus": {)";
  const char* separator = "";
  for (std::uint32_t i = 0; i < prefixes; ++i) {
    text += separator + ("\"" + prefixAt(i).stringValue().str()) +
            R"(": {"type": "static", "fec": "0.1"})";
    separator = ",";
  }
  return text +
         R"(}}}, "forwardingStatus": {"0.1": {"vias": [{"hop": "192.0.2.1", "interface": "Ethernet1"}]}}})";
}

/// One in four routes goes, and comes again the next time.
void change(Batch& batch, std::uint64_t number) {
  const Vrf::VrfIdMap::VrfId vrf(0);
  const std::uint64_t round = number / prefixes;
  Vanta::Fib::Route route;
  route.key = prefixAt(number);
  route.fecId = Vanta::Fib::FecId(1);
  route.routeType = Routing::Fib::RouteType::staticRoute;
  route.metric = static_cast<std::uint32_t>(round + 1);
  const bool goes = number % 4 == 0 && round % 2 == 0, comes = number % 4 == 0 && round % 2 == 1;
  if (goes) return batch.remove(vrf, route.key);
  batch.enter(vrf, route, comes ? What::entered : What::replaced);
}

TEST(FastWriter, WritesAsFastAsItIsAsked) {
  const char* const asked = std::getenv("ROVA_FAST_WRITER");
  if (!asked) GTEST_SKIP() << "ROVA_FAST_WRITER is not set";
  std::string path;
  std::uint64_t rate = 0, seconds = 0, number = 0;
  std::istringstream(asked) >> path >> rate >> seconds;
  WriterLock lock(path);
  Facts facts;
  facts.agent = getpid();
  Writer writer(path, Log::kept);
  writer.checkpointByHand();
  writer.replace(sources::snapshot::loadText(firstState(), path), facts);
  lock.beat();
  std::cout << "ready" << std::endl;
  std::cin.get();
  const auto begin = steady_clock::now();
  for (auto next = begin; number < rate * seconds; next += commitEvery) {
    std::this_thread::sleep_until(next);
    Batch batch(writer);
    for (std::uint64_t i = 0; i < rate / (milliseconds(1000) / commitEvery); ++i) {
      change(batch, number++);
    }
    facts.changed = timeNow();
    batch.commit(facts);
    lock.beat();
    writer.checkpoint();
  }
  const std::chrono::duration<double> taken = steady_clock::now() - begin;
  std::cout << "rate " << static_cast<double>(number) / taken.count() << std::endl;
}

} // namespace
