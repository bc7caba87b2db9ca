#include "sources/database/Database.h"

#include "sources/database/HiddenRows.h"
#include "sources/database/Lock.h"
#include "sources/database/Schema.h"
#include "sources/database/Showable.h"
#include "sources/database/SnapshotText.h"
#include "sources/database/Table.h"
#include "sources/database/Writer.h"
#include "sources/snapshot/FileError.h"
#include "sources/snapshot/Snapshot.h"

#include <cstring>
#include <sqlite3.h>

namespace sources::database {

namespace {

constexpr std::string_view firstBytes("SQLite format 3\0", 16);

/// Whoever may read the file may read the state.
void requireFile(const std::string& path) {
  const auto file = snapshot::openFile(path, O_RDONLY);
  if (!file.isOpen()) snapshot::failErrno(path, "cannot be read");
}

/// A file without a log and without a writer is read as it stands: its reader may have no right to
/// make the log's files.
Access accessTo(const std::string& path) {
  const bool hasLog = access((path + "-wal").c_str(), F_OK) == 0;
  return hasLog || liveWriter(path) ? Access::read : Access::unchanged;
}

/// Entities that own the tables of a database.
class Tables {
 public:
  explicit Tables(std::shared_ptr<Session> session) : session_(std::move(session)) {}

  template <class Status, class... Rows>
  auto entity(Rows... rows) const {
    return Lumo::newEntity<Status>(std::make_unique<Table<Rows>>(session_, std::move(rows))...);
  }

 private:
  std::shared_ptr<Session> session_;
};

void putTables(const Tables& tables, state::VrfState& vrf) {
  using Vanta::KernelUnprogrammedRoute::UnprogrammedRoute;
  vrf.routingStatus = tables.entity<Vanta::Fib::RouteStatus>(RouteRows<Ip4>(vrf.id));
  vrf.routing6Status = tables.entity<Vanta::Fib6::RouteStatus>(RouteRows<Ip6>(vrf.id));
  vrf.kernelUnprogrammedRoute =
      tables.entity<UnprogrammedRoute>(KernelErrorRows<Ip4>(vrf.id), KernelErrorRows<Ip6>(vrf.id));
}

void putTables(const Tables& tables, state::DeviceState& device) {
  using Vanta::Fib::Fec;
  using Fec6 = Vanta::Fib6::Fec;
  for (auto& vrf : device.vrfs) putTables(tables, vrf);
  device.forwardingStatus = tables.entity<Vanta::Fib::ForwardingStatus>(FecRows<Fec>("fec4"));
  device.forwarding6Status = tables.entity<Vanta::Fib6::ForwardingStatus>(FecRows<Fec6>("fec6"));
  device.policyForwardingStatus =
      tables.entity<Vanta::Fib::ForwardingStatus>(FecRows<Fec>("policy_fec"));
  device.unprogrammedRouteStatus = tables.entity<Vanta::Fib::UnprogrammedRouteStatus>(
      UnprogrammedRows<Ip4>(), UnprogrammedCountRows<Ip4>());
  device.unprogrammedRoute6Status = tables.entity<Vanta::Fib6::UnprogrammedRouteStatus>(
      UnprogrammedRows<Ip6>(), UnprogrammedCountRows<Ip6>());
  device.arpVanta =
      tables.entity<Arp::Table::Status>(NeighbourRows("neighbour4"), NeighbourRows("neighbour6"));
  device.nhEntryStatus = tables.entity<NexthopGroup::EntryStatus>(NexthopGroupRows());
}

void putCounters(const Tables& tables, state::DeviceState& device) {
  using Gaugex::CounterTable;
  using CounterKeys = Routing::NexthopGroup::NexthopGroupEntryToCounterKeyTable;
  device.counterKeyTable = tables.entity<CounterKeys>(CounterKeyRows());
  device.counterTable = tables.entity<CounterTable>(CounterRows("counter"));
  device.snapshotTable = tables.entity<CounterTable>(CounterRows("counter_snapshot"));
  device.entityManager->entityIs(CounterKeys::path, device.counterKeyTable);
  device.entityManager->entityIs(CounterTable::path, device.counterTable);
  device.entityManager->entityIs(CounterTable::snapshotPath, device.snapshotTable);
}

/// Tells a reader who may not make the files of the log which of them it lacks; does nothing when
/// that is not what is wrong.
void explainMissing(const std::string& path, const SqliteError& error) {
  if (error.code() != SQLITE_CANTOPEN && error.code() != SQLITE_READONLY) return;
  for (const char* const suffix : {"-wal", "-shm"}) {
    if (access((path + suffix).c_str(), R_OK) == 0) continue;
    throw SourceError(path + suffix + ": cannot be read: " + Lumo::errorString(errno) +
                      "; a reader that may not write here needs it, and its writer makes it");
  }
}

/// Calls `read` with a session that holds the file's state.
template <class Read>
auto withSession(const std::string& path, Access access, Read&& read) {
  requireFile(path);
  try {
    const auto session = std::make_shared<Session>(path, access);
    session->hold();
    requireSchema(session->connection());
    return read(session);
  } catch (const WrongColumn& wrong) {
    throw SourceError(path + ": damaged: " + wrong.what());
  } catch (const SqliteError& error) {
    explainMissing(path, error);
    throw;
  }
}

template <class Read>
auto withSession(const std::string& path, Read&& read) {
  return withSession(path, accessTo(path), std::forward<Read>(read));
}

/// How long an agent may keep silent before its readers are told: three of its heartbeats.
constexpr std::chrono::seconds longestSilence{3};

/// A file that no agent ever kept is as current as it is meant to be.
std::optional<Notes::Silence> silenceOf(const std::string& path, const Facts& facts) {
  if (facts.agent == 0) return {};
  const auto writer = liveWriter(path);
  if (writer && writer->silence < longestSilence) return {};
  const auto lastSign = std::max({facts.changed, facts.stopped, lastBeat(path)});
  return Notes::Silence{writer ? "silent" : "gone", timeText(lastSign),
                        (timeNow() - lastSign) / 1000};
}

State stateIn(const std::shared_ptr<Session>& session, const Needs& needs) {
  Connection& connection = session->connection();
  const std::string& path = connection.path();
  const auto text = database::snapshotText(connection, needs);
  State state{snapshot::loadText(text, path), {}, session};
  requireShowable(state.device, path + ": damaged");
  state.notes.hiddenRoutes = hiddenAmong(readHidden(connection), needs, state.device);
  state.notes.silence = silenceOf(path, readFacts(connection));
  putTables(Tables(session), state.device);
  putCounters(Tables(session), state.device);
  return state;
}

} // namespace

bool isDatabase(const std::string& path) {
  const auto file = snapshot::openFile(path, O_RDONLY);
  char bytes[firstBytes.size()];
  return file.isOpen() && pread(file.number(), bytes, sizeof bytes, 0) == sizeof bytes &&
         std::string_view(bytes, sizeof bytes) == firstBytes;
}

Facts factsOf(const std::string& path) {
  return withSession(path, [](const auto& session) { return readFacts(session->connection()); });
}

std::vector<TableSize> tableSizes(const std::string& path) {
  return withSession(path, [](const auto& session) {
    std::vector<TableSize> sizes;
    Statement select(session->connection(), "select name, sum(pgsize) from dbstat where name in "
                                            "(select name from sqlite_schema where type = 'table') "
                                            "group by name");
    while (select.step()) {
      TableSize size{std::string(select.text("name")), 0, 0};
      size.bytes = select.integer("bytes");
      size.rows = session->connection().number("select count(*) from \"" + size.table + "\"");
      sizes.push_back(std::move(size));
    }
    return sizes;
  });
}

State load(const std::string& path, const Needs& needs) {
  return withSession(path, [&](const auto& session) { return stateIn(session, needs); });
}

LoggedState loadWithLog(const std::string& path, const Needs& needs) {
  const Access access = accessTo(path);
  return withSession(path, access, [&](const auto& session) {
    return LoggedState{stateIn(session, needs), LogReader(session), access == Access::unchanged};
  });
}

void save(const state::DeviceState& device, const std::string& source, const std::string& path) {
  WriterLock lock(path);
  Facts facts;
  facts.source = source;
  facts.changed = timeNow();
  Writer(path, Log::joined).replace(device, facts);
  lock.beat(); // wakes who waits for a change
}

} // namespace sources::database
