// A transaction of the database's writer.
#pragma once

#include "sources/database/Sqlite.h"

namespace sources::database {

/// A transaction that is undone unless it is committed.
class Transaction {
 public:
  explicit Transaction(Connection& connection);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void commit();

 private:
  Connection& connection_;
  bool committed_ = false;
};

} // namespace sources::database
