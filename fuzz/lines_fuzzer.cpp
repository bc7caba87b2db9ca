// Feeds any bytes as the configuration lines of static routes: each is refused with a place inside
// it, or what all of them make is saved as lines that read as the same configuration.
#include "command/StaticLineParser.h"
#include "command/StaticLines.h"
#include "lumo/ActivityLock.h"
#include "rova/CliSupport.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

using namespace command;

namespace {

[[noreturn]] void stop(const char* why, std::string_view text) {
  std::fprintf(stderr, "%s\n%.*s\n", why, static_cast<int>(text.size()), text.data());
  std::abort();
}

/// The configuration of both families of one VRF.
struct Config {
  Lumo::Ptr<Routing::ConfigGen> ip = Lumo::newEntity<Routing::ConfigGen>();
  Lumo::Ptr<Routing::ConfigGen> ip6 = Lumo::newEntity<Routing::ConfigGen>();

  void enter(std::string_view text) {
    const auto line = parseStaticLine(text);
    enterStaticLine(line, line.ip6 ? *ip6 : *ip);
  }
  std::string saved() const {
    Rova::StaticRoutesCliSaver saver;
    Rova::StaticRoutesCliSaver saver6;
    return saver.save(ip, false, "ip route ", {}).str() +
           saver6.save(ip6, false, "ipv6 route ", {}).str();
  }
};

void enterOrRefuse(const std::string& line, Config& config) {
  try {
    config.enter(line);
  } catch (const LineError& error) {
    if (error.column > line.size()) stop("an error stands behind its line:", line);
  }
}

std::string readAgain(const std::string& saved) {
  Config config;
  for (const auto& line : splitLines(saved)) {
    try {
      config.enter(line);
    } catch (const LineError& error) {
      stop(error.what(), line);
    }
  }
  return config.saved();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Lumo::ActivityLockHold lock;
  Config config;
  for (const auto& line : splitLines({reinterpret_cast<const char*>(data), size})) {
    enterOrRefuse(line, config);
  }
  const auto saved = config.saved();
  if (readAgain(saved) != saved) stop("saved lines come back changed:", saved);
  return 0;
}
