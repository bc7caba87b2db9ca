// A reader's connection with what its tables share: how long it looks at one state of the device,
// and what it knows of rows that rows lead to.
#pragma once

#include "sources/State.h"
#include "sources/database/Sqlite.h"

#include "kesh/IntfId.h"
#include "lumo/HashMap2018.h"
#include "state/FecId.h"

#include <chrono>
#include <optional>

namespace sources::database {

/// An interface's identifier as a column has it: 64 bits, the highest of which may be set.
inline std::int64_t signedInterface(const Kesh::IntfId& intfId) {
  return static_cast<std::int64_t>(intfId.value());
}

/// While it is held all that is read is one state of the device, for at most a second:
/// then it is the state of that time, since a reader that stays must not keep its writer from
/// reusing the log. Otherwise each read sees the newest state.
class Session : public Moment {
 public:
  /// How long a held state stays the same.
  static constexpr std::chrono::milliseconds longestHold{1000};

  Session(const std::string& path, Access access) : connection_(path, access) {}

  Connection& connection() { return connection_; }

  void hold() override;
  void release() noexcept override;
  bool isHeld() const { return held_; }
  /// How long what was read may be used again where nothing is held.
  static constexpr std::chrono::milliseconds longestUse{50};
  /// Grows with each state; what was read in one of another number may be outdated.
  std::uint64_t epoch() const { return epoch_; }

  /// Called ahead of each read, when no statement is under way; returns the epoch.
  std::uint64_t refresh();

  /// Sees to it that this process knows the interface's name. Raises `WrongColumn` for one that the
  /// database does not have.
  void requireName(const Kesh::IntfId& intfId);
  /// Raises `WrongColumn` for a FEC that the database does not have.
  void requireFec(Vanta::Fib::FecId id);

 private:
  std::string nameOf(const Kesh::IntfId& intfId);
  bool hasFec(Vanta::Fib::FecId id);
  void forgetFecs() { knownFecs_ = {}; }

  Connection connection_;
  bool held_ = false;
  std::chrono::nanoseconds since_{};
  std::uint64_t epoch_ = 0;
  std::optional<Statement> name_, fec4_, fec6_;
  Lumo::HashMap2018<Kesh::IntfId, bool> knownNames_;
  Lumo::HashMap2018<Vanta::Fib::FecId, bool> knownFecs_;
};

} // namespace sources::database
