// What a database says of itself: whose state it is, who keeps it, and how current it is.
#pragma once

#include "sources/database/Sqlite.h"

#include <string>

namespace sources::database {

/// Times are in milliseconds since 1970; 0 for never. What does not apply is empty.
struct Facts {
  std::string source;     ///< "kernel", "kernel:NAME", or the file of a snapshot
  std::string boot;       ///< the boot of the kernel, as /proc/sys/kernel/random/boot_id has it
  std::string network;    ///< the network namespace, as `networkNamespace` tells it
  std::int64_t agent = 0; ///< the process that keeps the state
  std::int64_t agentSince = 0;
  std::int64_t wholeSince = 0;   ///< 0 while tables are known to lack something
  std::int64_t changed = 0;      ///< the last change
  std::int64_t synchronised = 0; ///< the last time that all was read anew
  std::string reason;            ///< why it was
  std::int64_t stopped = 0;      ///< when the agent ended by itself
};

/// Raises `SqliteError` and `WrongColumn`.
Facts readFacts(Connection& connection);
/// Part of the caller's transaction, or one of its own.
void writeFacts(Connection& connection, const Facts& facts);

/// This boot of the kernel.
std::string bootId();
/// The network namespace that this process is in, by the device and number of its file.
std::string networkNamespace();
/// Milliseconds since 1970.
std::int64_t timeNow();
/// Such a time to the second (RFC 3339).
std::string timeText(std::int64_t milliseconds);

} // namespace sources::database
