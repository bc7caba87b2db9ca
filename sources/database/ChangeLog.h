// The log of changes in a database, for readers who follow it: in the order of the transactions,
// what happened to which route or FEC, and which other tables changed. It is written in the
// transaction of the changes themselves, so that no reader sees one without the other.
//
// It keeps the last `keptChanges` entries. Those of routes, of which there are many, share rows,
// and take up 7 bytes each where they come in hundreds (20 for IPv6); a lonely one has 40.
#pragma once

#include "sources/database/Sqlite.h"

#include "kesh/Prefix.h"
#include "state/FecId.h"
#include "state/Vrf.h"

#include <functional>
#include <set>

namespace sources::database {

class Session;

/// What happened to a route or FEC; the numbers stand in the file.
enum class What : int {
  entered = 1,
  replaced = 2,
  removed = 3,
  other = 4,     ///< something in the table or section of that name
  everything = 5 ///< anything may have changed
};

/// An entry of the log.
struct LoggedChange {
  std::int64_t seq = 0;
  std::int64_t time = 0; ///< of the transaction, in milliseconds since 1970
  What what = What::everything;
  int family = 0; ///< 4 or 6 for a route, 0 for none
  Vrf::VrfIdMap::VrfId vrf{};
  Kesh::Prefix prefix{};
  Kesh::Ip6Prefix prefix6{};
  Vanta::Fib::FecId fec{}; ///< null for none
  std::string name{};      ///< of what is neither
};

/// The entries that the log has; `last` is `first` - 1 where it has none.
struct LogRange {
  std::int64_t first = 1;
  std::int64_t last = 0;
  std::int64_t time = 0; ///< of the last one
};

/// Writes entries: one object a transaction, all within it. Everything raises `SqliteError`. What
/// was told is not written before `finish`.
class ChangeLog {
 public:
  /// The log has at least so many entries once there were that many.
  static constexpr std::int64_t keptChanges = 1'000'000;
  /// So many in one transaction are told as one change of everything: who follows looks at the
  /// whole sooner than at each of them.
  static constexpr std::int64_t mostAtOnce = 200'000;

  explicit ChangeLog(Connection& connection);

  void route(What what, std::int64_t vrf, const Kesh::Prefix& prefix);
  void route(What what, std::int64_t vrf, const Kesh::Ip6Prefix& prefix);
  void fec(What what, Vanta::Fib::FecId id);
  /// Once a transaction, however often it is called.
  void other(std::string_view name);

  /// From here on, whatever changes is one change of everything.
  void tellWhole() { whole_ = true; }
  /// Writes what is left, and lets go what is beyond `keptChanges`. To be called ahead of the
  /// commit.
  void finish();

 private:
  /// Whose routes a row has.
  struct Scope {
    int family;
    std::int64_t vrf;
    friend bool operator==(const Scope&, const Scope&) = default;
  };
  template <class Prefix>
  void enterRoute(What what, const Scope& scope, const Prefix& prefix);
  void writeRoutes();
  Statement& numbered(Statement& statement, What what);
  bool counts();
  void tellEverything();
  void remove(const char* condition, std::int64_t seq);

  Connection& connection_;
  const std::int64_t now_;
  const std::int64_t first_; ///< of this transaction
  std::int64_t next_;
  bool whole_ = false, isTold_ = false;
  std::set<std::string, std::less<>> others_;
  Scope scope_{};
  std::string keys_; ///< of the last routes, which are not written yet
  Statement route_, fec_, other_;
};

/// Reads entries, as of the state that the session holds.
class LogReader {
 public:
  explicit LogReader(std::shared_ptr<Session> session);

  /// Both raise `SourceError`, also where the log is damaged.
  LogRange range();
  /// Calls `visit` with the entries behind `seq`, in their order.
  void read(std::int64_t seq, const std::function<void(const LoggedChange&)>& visit);

 private:
  template <class Read>
  auto guarded(Read&& read);

  std::shared_ptr<Session> session_;
};

} // namespace sources::database
