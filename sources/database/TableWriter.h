// Brings a shared table of a state into the database, by what differs.
#pragma once

#include "sources/database/InterfaceRows.h"
#include "sources/database/Table.h"
#include "sources/database/Writer.h"

#include <algorithm>

namespace sources::database {

/// Calls `visit` with all records of a view, in the order of the database's rows.
template <class Rows, class View, class Visit>
void forEachInOrder(const View& view, Visit&& visit) {
  if (Rows::inKeyOrder && view.implementation().inKeyOrder()) {
    for (typename View::IteratorConst it(view); it; it.next()) visit(it.value());
    return;
  }
  std::vector<typename Rows::Value> records;
  for (typename View::IteratorConst it(view); it; it.next()) records.push_back(it.value());
  std::sort(records.begin(), records.end(),
            [](const auto& a, const auto& b) { return Rows::before(a.key, b.key); });
  for (const auto& record : records) visit(record);
}

/// Writes rows of one table.
template <class Rows>
class RowWriter {
 public:
  using Key = typename Rows::Key;
  using Value = typename Rows::Value;

  RowWriter(Connection& connection, Rows rows, std::int64_t now, ChangeLog& log)
      : connection_(connection),
        rows_(std::move(rows)),
        now_(now),
        log_(log),
        insert_(connection, Texts<Rows>(rows_).insert()),
        remove_(connection, Texts<Rows>(rows_).remove()) {}

  /// `what` is whether it replaces one.
  void enter(const Value& value, What what) {
    bindScope(insert_);
    Rows::bindKey(insert_, value.key);
    Rows::bindValues(insert_, value);
    Rows::bindExtras(insert_, value, now_);
    insert_.run();
    if constexpr (Rows::manyRows) {
      removeVias(value.key);
      enterVias(value);
    }
    rows_.log(log_, what, value.key);
  }

  void remove(const Key& key) {
    bindScope(remove_);
    Rows::bindKey(remove_, key);
    remove_.run();
    if constexpr (Rows::manyRows) removeVias(key);
    rows_.log(log_, What::removed, key);
  }

 private:
  void bindScope(Statement& statement) {
    if (rows_.vrf) statement.bind(*rows_.vrf);
  }
  Statement& prepared(std::optional<Statement>& statement, const std::string& text) {
    if (!statement) statement.emplace(connection_, text);
    return *statement;
  }
  void removeVias(const Key& key) {
    Statement& statement =
        prepared(removeVias_, "delete from " + rows_.viaTable() + " where fec = ?");
    Rows::bindKey(statement, key);
    statement.run();
  }
  void enterVias(const Value& fec) {
    Names columns = Rows::viaValues();
    columns.insert(columns.begin(), "fec");
    Statement& statement = prepared(insertVia_, Texts<Rows>::insertInto(rows_.viaTable(), columns));
    for (std::uint32_t i = 0; i < Rows::vias(fec); ++i) {
      Rows::bindKey(statement, fec.key);
      Rows::bindVia(statement, i, fec.via(Vanta::Fib::ViaIndex(i)));
      statement.run();
    }
  }

  Connection& connection_;
  Rows rows_;
  std::int64_t now_;
  ChangeLog& log_;
  Statement insert_, remove_;
  std::optional<Statement> removeVias_, insertVia_;
};

/// Makes a table's rows those of a view; adds the interfaces that they name.
template <class Rows, class View>
void replaceTable(const std::shared_ptr<Session>& session, const Rows& rows, const View& view,
                  std::int64_t now, ChangeLog& log, InterfaceSet& interfaces, Changes& changes) {
  using Value = typename Rows::Value;
  const Table<Rows> old(session, rows);
  RowWriter<Rows> writer(session->connection(), rows, now, log);
  auto before = std::make_unique<Value>();
  Vanta::IterHint hint = 0;
  bool hasOld = old.first(before.get(), hint);
  const auto nextOld = [&] {
    const auto key = before->key;
    hasOld = old.next(key, before.get(), hint);
  };
  const auto removeOld = [&] {
    writer.remove(before->key);
    ++changes.removed;
    nextOld();
  };
  forEachInOrder<Rows>(view, [&](const Value& value) {
    Rows::eachInterface(value,
                        [&](const Kesh::IntfId& id) { interfaces.insertOrAssign(id, true); });
    while (hasOld && Rows::before(before->key, value.key)) removeOld();
    const bool isThere = hasOld && !Rows::before(value.key, before->key);
    if (!isThere || !Rows::isSame(*before, value)) {
      writer.enter(value, isThere ? What::replaced : What::entered);
      ++changes.entered;
    }
    if (isThere) nextOld();
  });
  while (hasOld) removeOld();
}

} // namespace sources::database
