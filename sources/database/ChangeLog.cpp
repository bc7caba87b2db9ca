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

void readKey(Statement& row, LoggedChange& change) {
  switch (change.family = static_cast<int>(row.number("family", 6))) {
  case 4:
    change.vrf = readVrfId(row, "vrf");
    return readPrefix(row, change.prefix);
  case 6:
    change.vrf = readVrfId(row, "vrf");
    return readPrefix(row, change.prefix6);
  }
  row.wrong("family", "4 or 6");
}

LoggedChange readChange(Statement& row) {
  LoggedChange change;
  change.seq = row.integer("seq");
  change.time = row.integer("time");
  change.what = static_cast<What>(row.number("what", static_cast<int>(What::everything)));
  if (!row.null()) {
    change.fec = Vanta::Fib::FecId(row.number("fec", maxFecId));
  } else if (!row.null()) {
    change.name = row.text("name");
  } else if (!row.null()) {
    readKey(row, change);
  }
  return change;
}

} // namespace

ChangeLog::ChangeLog(Connection& connection)
    : connection_(connection),
      now_(timeNow()),
      first_(nextNumber(connection)),
      next_(first_),
      route_(connection, "insert into change_log (seq, time, what, family, vrf, last, rest) "
                         "values (?, ?, ?, ?, ?, ?, ?)"),
      fec_(connection, "insert into change_log (seq, time, what, fec) values (?, ?, ?, ?)"),
      other_(connection, "insert into change_log (seq, time, what, name) values (?, ?, ?, ?)") {}

Statement& ChangeLog::numbered(Statement& statement, What what) {
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
  remove("seq >= ?", first_);
  next_ = first_;
  numbered(other_, What::everything).bindNull().run();
  isTold_ = true;
}

template <class Prefix>
void ChangeLog::enterRoute(What what, int family, std::int64_t vrf, const Prefix& prefix) {
  if (!counts()) return;
  numbered(route_, what).bind(family).bind(vrf);
  bindPrefix(route_, prefix);
  route_.run();
}

void ChangeLog::route(What what, std::int64_t vrf, const Kesh::Prefix& prefix) {
  enterRoute(what, 4, vrf, prefix);
}

void ChangeLog::route(What what, std::int64_t vrf, const Kesh::Ip6Prefix& prefix) {
  enterRoute(what, 6, vrf, prefix);
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

void ChangeLog::trim() { remove("seq < ?", next_ - keptChanges); }

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
    Statement first(connection, "select seq from change_log order by seq limit 1");
    Statement last(connection, "select seq, time from change_log order by seq desc limit 1");
    if (!first.step() || !last.step()) return range;
    range.first = first.integer("seq");
    range.last = last.integer("seq");
    range.time = last.integer("time");
    return range;
  });
}

void LogReader::read(std::int64_t seq, const std::function<void(const LoggedChange&)>& visit) {
  guarded([&](Connection& connection) {
    Statement select(connection, "select seq, time, what, fec, name, family, vrf, last, rest "
                                 "from change_log where seq > ? order by seq");
    select.bind(seq);
    while (select.step()) visit(readChange(select));
  });
}

} // namespace sources::database
