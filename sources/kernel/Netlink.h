// Dumps and notifications over route netlink sockets.
#pragma once

#include "sources/SourceError.h"
#include "sources/kernel/Attributes.h"

#include <functional>
#include <memory>
#include <vector>

struct mnl_socket;

namespace sources::kernel {

/// What to dump. `what` names it in errors and notes ("IPv4 routes").
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

/// How a dump ended.
struct DumpEnd {
  bool known = true;        ///< the kernel knows such objects, and the attribute of the request
  bool interrupted = false; ///< it says that they changed meanwhile
  bool complete = true;     ///< the end was reached
};

/// A message of its own accord; `header` tells what happened to the object of the payload.
using TakeNotification = std::function<void(const nlmsghdr& header, Bytes payload)>;

/// The kernel as a follower hears it: a seam, behind which tests play one.
class Feed {
 public:
  virtual ~Feed() = default;
  /// Has the kernel tell from now on of the objects of that group (RTNLGRP_*).
  virtual void follow(unsigned group) = 0;
  /// Dumps what `request` names. Calls `keepsOn` behind each datagram, and gives the dump up when
  /// it says so. Raises `SourceError` when the kernel refuses.
  virtual DumpEnd dump(const Request& request, const TakeMessage& take,
                       const std::function<bool()>& keepsOn) = 0;
  /// Hands on what was notified up to now, without waiting. False when some of it was lost.
  virtual bool drain(const TakeNotification& take) = 0;
};

/// A route netlink socket of the network namespace in which it was opened.
class Socket {
 public:
  Socket();
  int descriptor() const;
  void send(const nlmsghdr& message, const Request& request);
  /// One datagram, valid until the next; raises `SourceError`.
  Bytes receive(const Request& request);
  /// One datagram of the kernel's that is there already; empty for none, or an error of
  /// `recvmsg`.
  std::pair<Bytes, int> receiveNow();

 private:
  struct Close {
    void operator()(mnl_socket* socket) const;
  };
  std::unique_ptr<mnl_socket, Close> socket_;
  std::vector<std::byte> buffer_;
};

/// The kernel of the network namespace in which the object was made.
class KernelFeed final : public Feed {
 public:
  /// With room for so many bytes of notifications, or as much of it as the system lets it have:
  /// those that find none are lost.
  explicit KernelFeed(int room = 32 * 1024 * 1024);
  /// What can be read as soon as something was notified.
  int descriptor() const { return notifications_.descriptor(); }
  void follow(unsigned group) override;
  DumpEnd dump(const Request& request, const TakeMessage& take,
               const std::function<bool()>& keepsOn) override;
  bool drain(const TakeNotification& take) override;

 private:
  void ask(const Request& request);
  void finishGivenUp(const Request& request);

  Socket dumps_;
  Socket notifications_; // of its own: a dump must not crowd them out
  std::uint32_t sequence_ = 0;
  bool isGivenUp_ = false; ///< the last dump, whose rest waits
};

} // namespace sources::kernel
