// Feeds any bytes to the reader of the kernel as what a kernel says: what comes of them is refused
// with an error, or it is a device whose snapshot loads and is saved as the same bytes again.
//
// The input is netlink messages side by side. Of their headers, the type says what kind of object a
// message has, the sequence number that it is of a dump (1) or told of its own accord (0), and the
// port when it comes: in every dump (0) or during the dump of that number alone.
#include "sources/kernel/Device.h"
#include "sources/kernel/Follower.h"
#include "sources/snapshot/Snapshot.h"

#include <linux/rtnetlink.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace sources::kernel;

namespace {

constexpr std::uint32_t dumpSequence = 1;
constexpr std::chrono::milliseconds dumpTime{100};

[[noreturn]] void stop(const char* why, const std::string& text) {
  std::fprintf(stderr, "%s\n%s\n", why, text.c_str());
  std::abort();
}

/// A message in memory of exactly its size, so that a sanitizer sees any read behind it.
struct Told {
  nlmsghdr header;
  std::vector<std::byte> bytes;

  bool isIn(std::uint32_t dump) const { return header.nlmsg_pid == 0 || header.nlmsg_pid == dump; }
  bool isNotification() const { return header.nlmsg_seq == 0; }
  /// Whether a dump of that request can have it: an object of its kind, or the end.
  bool answers(const Request& request) const {
    return header.nlmsg_type < NLMSG_MIN_TYPE || header.nlmsg_type == request.type - 2; // RTM_NEW*
  }
};

std::vector<Told> cut(Bytes input) {
  std::vector<Told> messages;
  forEachMessage(input, [&](const nlmsghdr& header, Bytes payload) {
    const auto* const first = payload.data() - sizeof header;
    messages.push_back({header, {first, first + header.nlmsg_len}});
  });
  return messages;
}

class PlayedKernel final : public Feed {
 public:
  explicit PlayedKernel(Bytes input) : messages_(cut(input)) {}

  void follow(unsigned) override {}
  DumpEnd dump(const Request& request, const TakeMessage& take,
               const std::function<bool()>& keepsOn) override {
    now += dumpTime;
    ++dump_;
    DumpReader reader(request, dumpSequence);
    for (const Told& told : messages_) {
      if (!told.isIn(dump_)) continue;
      if (told.isNotification()) {
        pending_.push_back(&told);
      } else if (told.answers(request) && !reader.feed(told.bytes, take)) {
        break;
      }
      if (!keepsOn()) return {true, reader.interrupted(), false};
    }
    return {reader.known(), reader.interrupted(), true};
  }
  bool drain(const TakeNotification& take) override {
    for (const Told* const told : std::exchange(pending_, {})) {
      take(told->header, Bytes(told->bytes).subspan(sizeof told->header));
    }
    return true;
  }

  std::chrono::steady_clock::time_point now;

 private:
  const std::vector<Told> messages_;
  std::vector<const Told*> pending_;
  std::uint32_t dump_ = 0;
};

state::DeviceState read(Bytes input) {
  PlayedKernel kernel(input);
  Follower follower(kernel, {}, [&] { return kernel.now; });
  follower.read(std::chrono::seconds(1));
  return makeDevice(follower.take());
}

void checkRoundTrip(const state::DeviceState& device) {
  using namespace sources::snapshot;
  const std::string saved = saveText(device);
  try {
    if (saveText(loadText(saved, "saved")) != saved) {
      stop("a saved text comes back changed:", saved);
    }
  } catch (const sources::SourceError& error) {
    stop(error.what(), saved);
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  state::DeviceState device;
  try {
    device = read(Bytes(reinterpret_cast<const std::byte*>(data), size));
  } catch (const sources::SourceError&) {
    return 0;
  }
  checkRoundTrip(device);
  return 0;
}
