// Sequence numbers count the entries from the microseconds since 1970 at which the file was made: a
// file that is started anew goes on behind the numbers of the one before, so that a reader who
// comes back with one of those is told of a gap and not of other changes. No writer makes a million
// entries a second for long, and the numbers stay exact where JSON is read into a double.
#include "sources/database/ChangeLog.h"

#include "sources/database/Columns.h"
#include "sources/database/Facts.h"

namespace sources::database {

namespace {

std::int64_t nextNumber(Connection& connection) {
  const auto last = connection.number("select ifnull(max(seq), 0) from change_log");
  return last != 0 ? last + 1 : timeNow() * 1000;
}

// A route is what happened, the length of its prefix, and the bytes of the prefix.
constexpr std::size_t headBytes = 2;
/// A row fits on a page of the file.
constexpr std::size_t mostKeyBytes = 2000;

std::size_t keyBytes(int family) { return headBytes + (family == 4 ? 4 : 16); }

template <class Address>
void readKey(const char* bytes, std::uint8_t length, Kesh::BasicPrefix<Address>& prefix) {
  const auto address = Address::fromBytes(bytes);
  if (length <= Address::bits) prefix = {address, length};
  if (length > Address::bits || prefix.address() != address) {
    throw WrongColumn("keys: found a prefix that is none");
  }
}

What readWhat(std::uint8_t number) {
  if (number < 1 || number > static_cast<int>(What::everything)) {
    throw WrongColumn("what: found " + std::to_string(number) + ", expected a number from 1 to 5");
  }
  return static_cast<What>(number);
}

/// One route of a row.
LoggedChange readRoute(const LoggedChange& row, std::string_view key) {
  LoggedChange change = row;
  change.what = readWhat(static_cast<std::uint8_t>(key[0]));
  const auto length = static_cast<std::uint8_t>(key[1]);
  const char* const bytes = key.data() + headBytes;
  change.family == 4 ? readKey(bytes, length, change.prefix)
                     : readKey(bytes, length, change.prefix6);
  return change;
}

using VisitChange = std::function<void(const LoggedChange&)>;

/// The routes of a row behind a number.
void readRoutes(Statement& row, LoggedChange change, std::int64_t seq, const VisitChange& visit) {
  change.family = static_cast<int>(row.number("family", 6));
  if (change.family != 4 && change.family != 6) row.wrong("family", "4 or 6");
  change.vrf = readVrfId(row, "vrf");
  const auto keys = row.blob("keys");
  const std::size_t size = keyBytes(change.family);
  if (keys.empty() || keys.size() % size != 0) row.wrong("keys", "keys of routes");
  change.seq -= static_cast<std::int64_t>(keys.size() / size);
  for (std::size_t at = 0; at < keys.size(); at += size) {
    if (++change.seq > seq) visit(readRoute(change, keys.substr(at, size)));
  }
}

/// The entries of a row behind a number.
void readRow(Statement& row, std::int64_t seq, const VisitChange& visit) {
  LoggedChange change;
  change.seq = row.integer("seq");
  change.time = row.integer("time");
  if (row.null()) {
    if (!row.null() || !row.null()) row.wrong("what", "a number");
    return readRoutes(row, change, seq, visit);
  }
  change.what = readWhat(static_cast<std::uint8_t>(row.number("what", 255)));
  if (!row.null()) {
    change.fec = Vanta::Fib::FecId(row.number("fec", maxFecId));
  } else if (!row.null()) {
    change.name = row.text("name");
  }
  visit(change);
}

} // namespace

ChangeLog::ChangeLog(Connection& connection)
    : connection_(connection),
      now_(timeNow()),
      first_(nextNumber(connection)),
      next_(first_),
      route_(connection, "insert into change_log (seq, time, family, vrf, keys) "
                         "values (?, ?, ?, ?, ?)"),
      fec_(connection, "insert into change_log (seq, time, what, fec) values (?, ?, ?, ?)"),
      other_(connection, "insert into change_log (seq, time, what, name) values (?, ?, ?, ?)") {}

Statement& ChangeLog::numbered(Statement& statement, What what) {
  writeRoutes();
  return statement.bind(next_++).bind(now_).bind(std::int64_t{static_cast<int>(what)});
}

bool ChangeLog::counts() {
  if (next_ - first_ >= mostAtOnce) whole_ = true;
  if (!whole_) return true;
  if (!isTold_) tellEverything();
  return false;
}

/// Removes entries by their numbers.
void ChangeLog::remove(const char* condition, std::int64_t seq) {
  connection_.measure(); // the transaction may have made the file grow
  Statement(connection_, std::string("delete from change_log where ") + condition).bind(seq).run();
}

void ChangeLog::tellEverything() {
  keys_.clear();
  remove("seq >= ?", first_);
  next_ = first_;
  numbered(other_, What::everything).bindNull().run();
  isTold_ = true;
}

template <class Prefix>
void ChangeLog::enterRoute(What what, const Scope& scope, const Prefix& prefix) {
  if (!counts()) return;
  if (scope != scope_ || keys_.size() > mostKeyBytes) writeRoutes();
  scope_ = scope;
  keys_ += static_cast<char>(what);
  keys_ += static_cast<char>(prefix.len());
  for (const auto byte : prefix.address().bytes()) keys_ += static_cast<char>(byte);
  ++next_;
}

void ChangeLog::writeRoutes() {
  if (keys_.empty()) return;
  route_.bind(next_ - 1).bind(now_).bind(scope_.family).bind(scope_.vrf).bindBlob(keys_).run();
  keys_.clear();
}

void ChangeLog::route(What what, std::int64_t vrf, const Kesh::Prefix& prefix) {
  enterRoute(what, {4, vrf}, prefix);
}

void ChangeLog::route(What what, std::int64_t vrf, const Kesh::Ip6Prefix& prefix) {
  enterRoute(what, {6, vrf}, prefix);
}

void ChangeLog::fec(What what, Vanta::Fib::FecId id) {
  if (!counts()) return;
  numbered(fec_, what).bind(static_cast<std::int64_t>(id.value())).run();
}

void ChangeLog::other(std::string_view name) {
  if (others_.contains(name)) return;
  others_.emplace(name);
  if (counts()) numbered(other_, What::other).bindText(name).run();
}

void ChangeLog::finish() {
  writeRoutes();
  remove("seq < ?", next_ - keptChanges);
}

LogReader::LogReader(std::shared_ptr<Session> session) : session_(std::move(session)) {}

template <class Read>
auto LogReader::guarded(Read&& read) {
  Connection& connection = session_->connection();
  try {
    return read(connection);
  } catch (const WrongColumn& wrong) {
    throw SourceError(connection.path() + ": damaged: change_log: " + wrong.what());
  }
}

LogRange LogReader::range() {
  return guarded([](Connection& connection) {
    LogRange range;
    connection.measure(); // the file may have grown since it was opened
    Statement first(connection, "select seq, family, length(keys) from change_log "
                                "order by seq limit 1");
    Statement last(connection, "select seq, time from change_log order by seq desc limit 1");
    if (!first.step() || !last.step()) return range;
    range.first = first.integer("seq");
    if (!first.null()) {
      const std::size_t size = keyBytes(static_cast<int>(first.integer("family")));
      range.first -= first.integer("keys") / static_cast<std::int64_t>(size) - 1;
    }
    range.last = last.integer("seq");
    range.time = last.integer("time");
    return range;
  });
}

void LogReader::read(std::int64_t seq, const std::function<void(const LoggedChange&)>& visit) {
  guarded([&](Connection& connection) {
    Statement select(connection,
                     "select seq, time, what, fec, name, family, vrf, keys from change_log "
                     "where seq > ? order by seq");
    select.bind(seq);
    while (select.step()) readRow(select, seq, visit);
  });
}

} // namespace sources::database
