#include "sources/database/Writer.h"

#include "sources/database/HiddenRows.h"
#include "sources/database/Schema.h"
#include "sources/database/SectionRows.h"
#include "sources/database/Showable.h"
#include "sources/database/StaticRows.h"
#include "sources/database/TableWriter.h"
#include "sources/database/Transaction.h"
#include "sources/database/VrfRows.h"

#include <cstdio>
#include <sqlite3.h>

namespace sources::database {

namespace {

template <class View>
bool has(const View& view, Vanta::Fib::FecId id) {
  bool found = false;
  view.safeLookup(id, found, 0);
  return found;
}

bool hasFec(const state::DeviceState& device, Vanta::Fib::FecId id) {
  if (Vanta::Fib::isV6FecId(id)) return has(device.forwarding6Status->fec, id);
  return has(device.forwardingStatus->fec, id) || has(device.policyForwardingStatus->fec, id);
}

/// Refuses what the tables would not give back: see the checks of `RouteRows`.
template <class Family>
void requireReadable(const state::DeviceState& device, const state::VrfState& vrf) {
  static const std::uint64_t known = knownRouteTypes<typename Family::RouteType>();
  const auto refuse = [&](const auto& route, const std::string& found) {
    throw SourceError("VRF " + vrf.name.stringValue().str() + ", route " +
                      route.key.stringValue().str() + ": found " + found);
  };
  Vanta::Fib::FecId last;
  const auto& routes = (vrf.*Family::routingStatus)->route;
  using View = std::decay_t<decltype(routes)>;
  for (typename View::IteratorConst it(routes); it; it.next()) {
    const auto& route = it.value();
    const auto type = static_cast<std::uint32_t>(route.routeType);
    if (type > 63 || !(known >> type & 1)) {
      refuse(route, "type " + std::to_string(type) + ", which has no word");
    }
    if (!Family::needsFec) continue;
    if (route.fecId.isNull()) refuse(route, "no FEC, which a listing needs");
    if (route.fecId != last && !hasFec(device, route.fecId)) {
      refuse(route, "a FEC that is in no table, which a listing needs");
    }
    last = route.fecId;
  }
}

/// Brings a whole state in.
class Replacing {
 public:
  Replacing(const std::shared_ptr<Session>& session, const state::DeviceState& device,
            const RouteFacts& routeFacts)
      : session_(session),
        device_(device),
        routeFacts_(routeFacts),
        now_(timeNow()),
        log_(session->connection()) {}

  /// `inDetail` is whether the log tells each change.
  Changes run(bool inDetail) {
    requireShowable(device_, "the state");
    if (!inDetail || readVrfs(session_->connection()).empty()) log_.tellWhole();
    for (const auto& vrf : device_.vrfs) {
      replaceVrf<Ip4>(vrf);
      replaceVrf<Ip6>(vrf);
    }
    Connection& connection = session_->connection();
    // Routes lead to FECs: those that stand there already are read while these are there too.
    removeOtherVrfs(connection, device_);
    replace(FecRows<Vanta::Fib::Fec>("fec4"), device_.forwardingStatus->fec);
    replace(FecRows<Vanta::Fib6::Fec>("fec6"), device_.forwarding6Status->fec);
    replace(FecRows<Vanta::Fib::Fec>("policy_fec"), device_.policyForwardingStatus->fec);
    replaceFamily<Ip4>("neighbour4");
    replaceFamily<Ip6>("neighbour6");
    replace(NexthopGroupRows(), device_.nhEntryStatus->nexthopGroupEntry);
    replace(CounterKeyRows(), device_.counterKeyTable->counterKeyInfo);
    replace(CounterRows("counter"), device_.counterTable->counter);
    replace(CounterRows("counter_snapshot"), device_.snapshotTable->counter);
    replaceVrfs(connection, log_, device_, routeFacts_);
    replaceHidden(connection, log_, routeFacts_.hidden);
    replaceInterfaces(connection, log_, interfaces_);
    replaceSections(connection, log_, device_);
    replaceStaticRoutes(connection, log_, device_);
    log_.finish();
    return changes_;
  }

 private:
  template <class Rows, class View>
  void replace(const Rows& rows, const View& view) {
    replaceTable(session_, rows, view, now_, log_, interfaces_, changes_);
  }
  template <class Family>
  void replaceVrf(const state::VrfState& vrf) {
    requireReadable<Family>(device_, vrf);
    replace(RouteRows<Family>(vrf.id), (vrf.*Family::routingStatus)->route);
    replace(KernelErrorRows<Family>(vrf.id), (*vrf.kernelUnprogrammedRoute).*Family::kernelErrors);
  }
  template <class Family>
  void replaceFamily(const char* neighbours) {
    const auto& unprogrammed = *(device_.*Family::unprogrammedRouteStatus);
    replace(UnprogrammedRows<Family>(), unprogrammed.unprogrammedRoute);
    replace(UnprogrammedCountRows<Family>(), unprogrammed.unprogrammedRouteCount);
    replace(NeighbourRows(neighbours), (*device_.arpVanta).*Family::neighbors);
  }

  std::shared_ptr<Session> session_;
  const state::DeviceState& device_;
  const RouteFacts& routeFacts_;
  std::int64_t now_;
  ChangeLog log_;
  InterfaceSet interfaces_;
  Changes changes_;
};

bool isEmpty(Connection& connection) {
  return connection.number("select count(*) from sqlite_schema") == 0 &&
         connection.number("pragma application_id") == 0;
}

std::shared_ptr<Session> openToWrite(const std::string& path) {
  auto session = std::make_shared<Session>(path, Access::write);
  Connection& connection = session->connection();
  connection.execute("pragma journal_mode = wal; pragma synchronous = normal");
  if (isEmpty(connection)) makeSchema(connection);
  return session;
}

constexpr int pageSize = 4096; // SQLite's own choice
constexpr int mostLogPages = 16 * 1024 * 1024 / pageSize;
/// A reader holds a state for `Session::longestHold`, and a step of its walk takes a while too.
constexpr int waitForReaders = 1500; // ms

/// How long a call waits for others, for the life of the object.
class BusyTimeout {
 public:
  BusyTimeout(sqlite3* handle, int milliseconds) : handle_(handle) {
    sqlite3_busy_timeout(handle_, milliseconds);
  }
  ~BusyTimeout() { sqlite3_busy_timeout(handle_, Connection::waitForWriter); }
  BusyTimeout(const BusyTimeout&) = delete;
  BusyTimeout& operator=(const BusyTimeout&) = delete;

 private:
  sqlite3* handle_;
};

int notePages(void* pages, sqlite3*, const char*, int count) {
  *static_cast<int*>(pages) = count;
  return SQLITE_OK;
}

template <class Rows>
void visitRows(const std::shared_ptr<Session>& session, const Rows& rows,
               const std::function<void(const typename Rows::Value&)>& visit) {
  const Table<Rows> table(session, rows);
  const auto value = std::make_unique<typename Rows::Value>();
  Vanta::IterHint hint = 0;
  for (bool has = table.first(value.get(), hint); has;) {
    visit(*value);
    const auto key = value->key;
    has = table.next(key, value.get(), hint);
  }
}

} // namespace

void removeFiles(const std::string& path) {
  for (const char* const suffix : {"", "-wal", "-shm"}) std::remove((path + suffix).c_str());
}

Writer::Writer(const std::string& path, Log log) : session_(openToWrite(path)) {
  if (!hasSchema(connection())) {
    requireOwn(connection());
    session_.reset();
    removeFiles(path);
    session_ = openToWrite(path);
  }
  int keep = log == Log::kept;
  sqlite3_file_control(connection().handle(), "main", SQLITE_FCNTL_PERSIST_WAL, &keep);
}

void Writer::tell(const Facts& facts) {
  Transaction transaction(connection());
  writeFacts(connection(), facts);
  transaction.commit();
}

void Writer::checkpointByHand() {
  logPages_ = std::make_unique<int>(0);
  sqlite3_wal_hook(connection().handle(), notePages, logPages_.get());
  // What the log took up at its largest goes back to the system as soon as it begins anew.
  connection().execute("pragma journal_size_limit = 16777216");
}

bool Writer::checkpoint() {
  if (!logPages_ || *logPages_ < mostLogPages) return true;
  const bool restarts = *logPages_ >= 2 * mostLogPages;
  sqlite3* const handle = connection().handle();
  const BusyTimeout wait(handle, waitForReaders);
  const int result = sqlite3_wal_checkpoint_v2(
      handle, nullptr, restarts ? SQLITE_CHECKPOINT_RESTART : SQLITE_CHECKPOINT_PASSIVE, nullptr,
      nullptr);
  if ((result & 0xff) == SQLITE_BUSY) return !restarts;
  if (result != SQLITE_OK) connection().fail();
  *logPages_ = 0; // until the next transaction tells
  return true;
}

void Writer::visitFecs(const std::function<void(const Vanta::Fib::Fec&)>& visit,
                       const std::function<void(const Vanta::Fib6::Fec&)>& visit6) {
  visitRows(session_, FecRows<Vanta::Fib::Fec>("fec4"), visit);
  visitRows(session_, FecRows<Vanta::Fib6::Fec>("fec6"), visit6);
}

Changes Writer::replace(const state::DeviceState& device, const Facts& facts,
                        const RouteFacts& routeFacts) {
  Transaction transaction(connection());
  // A route of a snapshot may lead to a FEC that is not there: what is told of FECs holds of states
  // that an agent keeps.
  const Changes changes = Replacing(session_, device, routeFacts).run(facts.agent != 0);
  writeFacts(connection(), facts);
  transaction.commit();
  return changes;
}

} // namespace sources::database
