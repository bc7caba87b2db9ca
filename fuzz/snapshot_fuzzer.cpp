// Feeds any bytes to the snapshot loader: it refuses them with an error of one line, or what it
// loads is saved to a text that loads to the same text again.
#include "sources/snapshot/Snapshot.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

using namespace sources::snapshot;

namespace {

[[noreturn]] void stop(const char* why, std::string_view text) {
  std::fprintf(stderr, "%s\n%.*s\n", why, static_cast<int>(text.size()), text.data());
  std::abort();
}

void checkMessage(std::string_view message) {
  if (!message.starts_with("fuzz: ")) stop("an error does not name its input:", message);
  if (message.find('\n') != message.npos) stop("an error has more than one line:", message);
}

void checkRoundTrip(const state::DeviceState& device) {
  const std::string saved = saveText(device);
  try {
    if (saveText(loadText(saved, "saved")) != saved)
      stop("a saved text comes back changed:", saved);
  } catch (const sources::SourceError& error) {
    stop(error.what(), saved);
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    checkRoundTrip(loadText({reinterpret_cast<const char*>(data), size}, "fuzz"));
  } catch (const sources::SourceError& error) {
    checkMessage(error.what());
  }
  return 0;
}
