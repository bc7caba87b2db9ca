// A dump of one kind of object over a route netlink socket.
#pragma once

#include "sources/SourceError.h"
#include "sources/kernel/Attributes.h"

#include <functional>
#include <memory>
#include <vector>

struct mnl_socket;

namespace sources::kernel {

/// What to dump. `what` names it in errors ("routes").
struct Request {
  const char* what;
  std::uint16_t type;          ///< RTM_GET*
  std::uint8_t family;         ///< AF_*
  std::uint8_t headerSize;     ///< of the kind's own header, whose first byte is the family
  std::uint16_t attribute = 0; ///< one of four bytes that says more of what to dump; 0 for none
  std::uint32_t attributeValue = 0;
};

/// The payload of a message: the header of its kind, then attributes.
using TakeMessage = std::function<void(Bytes payload)>;

/// Reads the datagrams of one dump.
class DumpReader {
 public:
  /// For the replies to the request of that sequence number.
  DumpReader(const Request& request, std::uint32_t sequence)
      : request_(request), sequence_(sequence) {}

  /// Hands on the objects of a datagram; false behind the last one of the dump. Raises
  /// `SourceError` when the kernel refused the request.
  bool feed(Bytes datagram, const TakeMessage& take);
  /// Whether the kernel's state changed meanwhile, so that objects may be missing or there twice.
  bool interrupted() const { return interrupted_; }
  /// Whether the kernel knows such objects and the attribute of the request.
  bool known() const { return known_; }

 private:
  bool feedMessage(const nlmsghdr& header, Bytes payload, const TakeMessage& take);
  bool finish(Bytes payload);

  Request request_;
  std::uint32_t sequence_;
  bool interrupted_ = false;
  bool known_ = true;
};

/// A socket of the network namespace in which it was opened.
class Socket {
 public:
  Socket();
  /// Dumps what `request` names. Before each attempt it calls `restart`, which drops what an
  /// attempt before took; after ten attempts that were disturbed it raises `SourceError`. False,
  /// with nothing taken, when the kernel does not know such objects or the attribute.
  bool dump(const Request& request, const std::function<void()>& restart, const TakeMessage& take);

 private:
  struct Close {
    void operator()(mnl_socket* socket) const;
  };
  DumpReader dumpOnce(const Request& request, const TakeMessage& take);
  void send(const Request& request);
  Bytes receive(const Request& request);

  std::unique_ptr<mnl_socket, Close> socket_;
  std::vector<std::byte> buffer_;
  std::uint32_t sequence_ = 0;
};

/// How often state that changes while it is read is read again.
inline constexpr int maxAttempts = 10;

/// Calls `attempt` until it tells success, at most ten times; then raises `SourceError`.
void repeatUntilWhole(const char* what, const std::function<bool()>& attempt);

} // namespace sources::kernel
