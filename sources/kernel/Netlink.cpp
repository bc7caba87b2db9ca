#include "sources/kernel/Netlink.h"

#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

namespace sources::kernel {

namespace {

// The kernel fills datagrams of 32 KiB, and larger ones only for a single object that needs it.
constexpr std::size_t bufferSize = 256 * 1024;

[[noreturn]] void fail(const Request& request, const char* action, int error) {
  throw SourceError(std::string("cannot ") + action + " the kernel's " + request.what + ": " +
                    std::strerror(error));
}

/// Makes the kernel reject or heed every field of a request instead of passing over what an old
/// kernel did not know. Kernels before 4.20 lack it and dump the same.
void checkStrictly(const mnl_socket* socket) {
  const int on = 1;
  setsockopt(mnl_socket_get_fd(socket), SOL_NETLINK, NETLINK_GET_STRICT_CHK, &on, sizeof on);
}

/// Kernels that do not know a kind of object, or what is asked of it, refuse it in one of these
/// ways.
bool isUnknownKind(const Request& request, int error) {
  return request.type == RTM_GETNEXTHOP && (error == EOPNOTSUPP || error == EINVAL);
}

/// A table of routes comes to be with its first route.
bool isAbsentTable(const Request& request, int error) {
  return request.type == RTM_GETROUTE && request.attribute == RTA_TABLE && error == ENOENT;
}

/// Only root may go beyond the system's limit.
void makeRoom(int descriptor, int bytes) {
  if (setsockopt(descriptor, SOL_SOCKET, SO_RCVBUFFORCE, &bytes, sizeof bytes) == 0) return;
  setsockopt(descriptor, SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
}

} // namespace

bool DumpReader::feed(Bytes datagram, const TakeMessage& take) {
  bool more = true;
  forEachMessage(datagram, [&](const nlmsghdr& header, Bytes payload) {
    if (more && header.nlmsg_seq == sequence_) more = feedMessage(header, payload, take);
  });
  return more;
}

bool DumpReader::feedMessage(const nlmsghdr& header, Bytes payload, const TakeMessage& take) {
  if (header.nlmsg_flags & NLM_F_DUMP_INTR) interrupted_ = true;
  // The end of a dump and a refusal both carry a number, 0 or a negative error.
  if (header.nlmsg_type == NLMSG_DONE || header.nlmsg_type == NLMSG_ERROR) return finish(payload);
  if (header.nlmsg_type >= NLMSG_MIN_TYPE) take(payload);
  return true;
}

bool DumpReader::finish(Bytes payload) {
  const int error = -readRecord<int>(payload).value_or(0);
  if (error == 0 || isAbsentTable(request_, error)) return false;
  if (!isUnknownKind(request_, error)) fail(request_, "dump", error);
  known_ = false;
  return false;
}

void Socket::Close::operator()(mnl_socket* socket) const { mnl_socket_close(socket); }

Socket::Socket() : socket_(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC)), buffer_(bufferSize) {
  if (!socket_ || mnl_socket_bind(socket_.get(), 0, MNL_SOCKET_AUTOPID) < 0) {
    throw SourceError(std::string("cannot open a route netlink socket: ") + std::strerror(errno) +
                      "; the kernel must have networking, and a sandbox must allow AF_NETLINK");
  }
  checkStrictly(socket_.get());
}

int Socket::descriptor() const { return mnl_socket_get_fd(socket_.get()); }

void Socket::send(const nlmsghdr& message, const Request& request) {
  if (mnl_socket_sendto(socket_.get(), &message, message.nlmsg_len) < 0) {
    fail(request, "ask for", errno);
  }
}

Bytes Socket::receive(const Request& request) {
  ssize_t size;
  do {
    size = mnl_socket_recvfrom(socket_.get(), buffer_.data(), buffer_.size());
  } while (size < 0 && errno == EINTR);
  if (size < 0) fail(request, "receive", errno);
  return Bytes(buffer_).first(static_cast<std::size_t>(size));
}

std::pair<Bytes, int> Socket::receiveNow() {
  sockaddr_nl sender{};
  socklen_t length = sizeof sender;
  for (;;) {
    const auto size = recvfrom(descriptor(), buffer_.data(), buffer_.size(), MSG_DONTWAIT,
                               reinterpret_cast<sockaddr*>(&sender), &length);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) return {{}, errno};
    if (sender.nl_pid == 0) return {Bytes(buffer_).first(static_cast<std::size_t>(size)), 0};
  }
}

KernelFeed::KernelFeed(int room) { makeRoom(notifications_.descriptor(), room); }

void KernelFeed::follow(unsigned group) {
  // A kernel that does not know the group has no such objects.
  setsockopt(notifications_.descriptor(), SOL_NETLINK, NETLINK_ADD_MEMBERSHIP, &group,
             sizeof group);
}

void KernelFeed::ask(const Request& request) {
  alignas(nlmsghdr) char message[NLMSG_HDRLEN + 64] = {};
  nlmsghdr* const header = mnl_nlmsg_put_header(message);
  header->nlmsg_type = request.type;
  header->nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
  header->nlmsg_seq = ++sequence_;
  *static_cast<std::uint8_t*>(mnl_nlmsg_put_extra_header(header, request.headerSize)) =
      request.family;
  if (request.attribute) mnl_attr_put_u32(header, request.attribute, request.attributeValue);
  dumps_.send(*header, request);
}

DumpEnd KernelFeed::dump(const Request& request, const TakeMessage& take,
                         const std::function<bool()>& keepsOn) {
  if (std::exchange(isGivenUp_, false)) finishGivenUp(request);
  ask(request);
  DumpReader reader(request, sequence_);
  while (reader.feed(dumps_.receive(request), take)) {
    isGivenUp_ = !keepsOn();
    if (isGivenUp_) return {true, reader.interrupted(), false};
  }
  return {reader.known(), reader.interrupted(), true};
}

/// The kernel refuses another dump until the one before is over.
void KernelFeed::finishGivenUp(const Request& request) {
  DumpReader rest(request, sequence_);
  while (rest.feed(dumps_.receive(request), [](Bytes) {})) continue;
}

bool KernelFeed::drain(const TakeNotification& take) {
  bool lost = false;
  for (;;) {
    const auto [datagram, error] = notifications_.receiveNow();
    if (error == ENOBUFS) {
      lost = true;
    } else if (error != 0) {
      return !lost;
    }
    forEachMessage(datagram, take);
  }
}

} // namespace sources::kernel
