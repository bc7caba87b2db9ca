#include "sources/database/Session.h"

namespace sources::database {

namespace {

/// The time to some milliseconds, as each look-up asks for it.
std::chrono::nanoseconds coarseNow() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
  return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

} // namespace

void Session::hold() {
  if (held_) return;
  connection_.execute("begin");
  held_ = true;
  since_ = coarseNow();
  ++epoch_;
  forgetFecs();
}

void Session::release() noexcept {
  if (!std::exchange(held_, false)) return;
  ++epoch_;
  try {
    connection_.execute("rollback"); // nothing was written: it ends the reading, and cannot wait
  } catch (const SqliteError&) {
    // The next read says what is wrong with the file.
  }
}

std::uint64_t Session::refresh() {
  const auto age = coarseNow() - since_;
  if (age < (held_ ? longestHold : longestUse)) return epoch_;
  if (held_) {
    release();
    hold();
  } else {
    since_ = coarseNow();
    ++epoch_;
    forgetFecs();
  }
  return epoch_;
}

void Session::requireName(const Kesh::IntfId& intfId) {
  if (intfId.family() != Kesh::IntfId::namedFamily || knownNames_.find(intfId)) return;
  if (Kesh::IntfId(Lumo::String(nameOf(intfId))) != intfId) {
    throw WrongColumn("interface: found the name of another one, expected that of " +
                      std::to_string(signedInterface(intfId)));
  }
  knownNames_.insertOrAssign(intfId, true);
}

std::string Session::nameOf(const Kesh::IntfId& intfId) {
  if (!name_) name_.emplace(connection_, "select name from interface where id = ?");
  const Run run(*name_);
  name_->bind(signedInterface(intfId));
  if (name_->step()) return std::string(name_->text("name"));
  throw WrongColumn("interface: found " + std::to_string(signedInterface(intfId)) +
                    ", which has no name");
}

void Session::requireFec(Vanta::Fib::FecId id) {
  if (knownFecs_.find(id)) return;
  if (!hasFec(id)) {
    throw WrongColumn("fec: found " + std::to_string(id.value()) + ", which has no row");
  }
  knownFecs_.insertOrAssign(id, true);
}

// FECs of policies stand in a table of their own, under identifiers of the same kind.
bool Session::hasFec(Vanta::Fib::FecId id) {
  auto& statement = Vanta::Fib::isV6FecId(id) ? fec6_ : fec4_;
  if (!statement) {
    statement.emplace(connection_, Vanta::Fib::isV6FecId(id)
                                       ? "select 1 from fec6 where id = ?1"
                                       : "select 1 from fec4 where id = ?1 union all "
                                         "select 1 from policy_fec where id = ?1");
  }
  const Run run(*statement);
  return statement->bind(static_cast<std::int64_t>(id.value())).step();
}

} // namespace sources::database
