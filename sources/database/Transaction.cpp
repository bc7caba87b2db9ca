#include "sources/database/Transaction.h"

#include <sqlite3.h>

namespace sources::database {

Transaction::Transaction(Connection& connection) : connection_(connection) {
  connection_.execute("begin immediate");
  connection_.measure();
}

Transaction::~Transaction() {
  // What SQLite has undone by itself it refuses to undo.
  if (!committed_) sqlite3_exec(connection_.handle(), "rollback", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
  connection_.execute("commit");
  committed_ = true;
}

} // namespace sources::database
