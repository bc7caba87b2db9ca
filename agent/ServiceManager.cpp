#include "agent/ServiceManager.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>

namespace agent {

namespace {

using sources::snapshot::Descriptor;

/// Connected to the socket of that name; closed when there is none.
Descriptor connectTo(std::string_view name) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (name.empty() || name.size() >= sizeof address.sun_path) return {};
  std::memcpy(address.sun_path, name.data(), name.size());
  if (name[0] == '@') address.sun_path[0] = '\0';
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
  Descriptor descriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  const auto* const to = reinterpret_cast<const sockaddr*>(&address);
  return connect(descriptor.number(), to, size) == 0 ? std::move(descriptor) : Descriptor();
}

} // namespace

ServiceManager::ServiceManager() : watches_(std::getenv("WATCHDOG_USEC")) {
  if (const char* const name = std::getenv("NOTIFY_SOCKET")) socket_ = connectTo(name);
}

void ServiceManager::tell(std::string_view what) {
  if (socket_.isOpen())
    send(socket_.number(), what.data(), what.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

} // namespace agent
