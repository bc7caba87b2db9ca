#include "sources/database/Sqlite.h"

#include <algorithm>
#include <sqlite3.h>

namespace sources::database {

namespace {

/// How many steps of SQLite's machine stand behind one call of the guard.
constexpr int stepsPerCall = 1000;

/// A path as the URI that says how the file is opened: what means something there is escaped.
std::string uriOf(const std::string& path, const char* parameters) {
  std::string uri = "file:";
  for (const char c : path) {
    if (c == '?' || c == '#' || c == '%') {
      constexpr char digits[] = "0123456789ABCDEF";
      uri += {'%', digits[c >> 4], digits[c & 0xf]};
    } else {
      uri += c;
    }
  }
  return uri + parameters;
}

struct Opening {
  int flags;
  const char* parameters;
};

constexpr Opening openings[] = {
    {SQLITE_OPEN_READONLY, ""},
    {SQLITE_OPEN_READONLY, "?immutable=1"},
    {SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, ""},
};

const char* typeName(int type) {
  switch (type) {
  case SQLITE_INTEGER:
    return "a number";
  case SQLITE_FLOAT:
    return "a fraction";
  case SQLITE_TEXT:
    return "a text";
  case SQLITE_BLOB:
    return "bytes";
  }
  return "nothing";
}

} // namespace

Connection::Connection(const std::string& path, Access access) : path_(path) {
  const Opening& opening = openings[static_cast<int>(access)];
  const int result =
      sqlite3_open_v2(uriOf(path, opening.parameters).c_str(), &handle_,
                      opening.flags | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
  if (result != SQLITE_OK) {
    const SqliteError error(path, handle_ ? sqlite3_errmsg(handle_) : "out of memory", result);
    sqlite3_close_v2(handle_);
    throw error;
  }
  try {
    guard();
  } catch (...) {
    sqlite3_close_v2(handle_);
    throw;
  }
}

Connection::~Connection() { sqlite3_close_v2(handle_); }

// A file may come from anywhere: what it says of itself is not trusted, cells are checked against
// their pages, and a tree that leads back into itself ends with the budget.
void Connection::guard() {
  sqlite3_extended_result_codes(handle_, 1);
  sqlite3_busy_timeout(handle_, waitForWriter);
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  execute("pragma cell_size_check = on; pragma mmap_size = 0");
  measure();
  sqlite3_progress_handler(handle_, stepsPerCall, spend, this);
}

void Connection::measure() {
  // A row takes some 20 steps and no fewer than 8 bytes.
  const auto bytes = number("pragma page_count") * number("pragma page_size");
  budget_ = std::max<std::int64_t>(bytes, 1 << 20) * 20 / 8 / stepsPerCall;
}

int Connection::spend(void* connection) {
  auto& self = *static_cast<Connection*>(connection);
  if (self.pulse_) self.pulse_();
  return ++self.spent_ > self.budget_;
}

void Connection::fail() const {
  throw SqliteError(path_, sqlite3_errmsg(handle_), sqlite3_extended_errcode(handle_));
}

void Connection::execute(const std::string& statements) {
  refillBudget();
  if (sqlite3_exec(handle_, statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) fail();
}

std::int64_t Connection::number(const std::string& statement) {
  Statement one(*this, statement);
  return one.step() ? one.integer("number") : 0;
}

Statement::Statement(Connection& connection, const std::string& text) : connection_(connection) {
  check(sqlite3_prepare_v3(connection.handle(), text.data(), static_cast<int>(text.size()),
                           SQLITE_PREPARE_PERSISTENT, &handle_, nullptr));
}

Statement::~Statement() { sqlite3_finalize(handle_); }

Statement::Statement(Statement&& other) noexcept
    : connection_(other.connection_),
      handle_(std::exchange(other.handle_, nullptr)),
      parameter_(other.parameter_),
      column_(other.column_) {}

void Statement::check(int result) {
  if (result != SQLITE_OK) connection_.fail();
}

Statement& Statement::bind(std::int64_t value) {
  check(sqlite3_bind_int64(handle_, ++parameter_, value));
  return *this;
}

Statement& Statement::bindText(std::string_view text) {
  check(sqlite3_bind_text64(handle_, ++parameter_, text.data() ? text.data() : "", text.size(),
                            SQLITE_TRANSIENT, SQLITE_UTF8));
  return *this;
}

Statement& Statement::bindBlob(std::string_view bytes) {
  check(sqlite3_bind_blob64(handle_, ++parameter_, bytes.data(), bytes.size(), SQLITE_TRANSIENT));
  return *this;
}

Statement& Statement::bindNull() {
  check(sqlite3_bind_null(handle_, ++parameter_));
  return *this;
}

bool Statement::step() {
  column_ = 0;
  const int result = sqlite3_step(handle_);
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) {
    // The words are the connection's until its next call.
    const SqliteError error(connection_.path(), sqlite3_errmsg(connection_.handle()),
                            sqlite3_extended_errcode(connection_.handle()));
    reset();
    throw error;
  }
  reset();
  return false;
}

void Statement::reset() {
  sqlite3_reset(handle_);
  parameter_ = column_ = 0;
  connection_.refillBudget();
}

void Statement::wrong(const char* column, const std::string& expected) const {
  const int at = column_ - 1, type = sqlite3_column_type(handle_, at);
  const std::string found =
      type == SQLITE_INTEGER ? std::to_string(sqlite3_column_int64(handle_, at)) : typeName(type);
  throw WrongColumn(std::string(column) + ": found " + found + ", expected " + expected);
}

std::int64_t Statement::integer(const char* column) {
  // One call that locks for both what it is and how much.
  sqlite3_value* const value = sqlite3_column_value(handle_, column_++);
  if (sqlite3_value_type(value) != SQLITE_INTEGER) wrong(column, "a number");
  return sqlite3_value_int64(value);
}

std::uint64_t Statement::number(const char* column, std::uint64_t max) {
  const auto value = static_cast<std::uint64_t>(integer(column));
  if (value > max) wrong(column, "a number from 0 to " + std::to_string(max));
  return value;
}

std::string_view Statement::text(const char* column) {
  const int at = column_++;
  if (sqlite3_column_type(handle_, at) != SQLITE_TEXT) wrong(column, "a text");
  const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(handle_, at));
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_, at))};
}

std::string_view Statement::blob(const char* column) {
  const int at = column_++;
  if (sqlite3_column_type(handle_, at) != SQLITE_BLOB) wrong(column, "bytes");
  const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(handle_, at));
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_, at))};
}

std::string_view Statement::blob(const char* column, std::size_t size) {
  const bool isBlob = sqlite3_column_type(handle_, column_) == SQLITE_BLOB;
  const auto bytes = isBlob ? blob(column) : (++column_, std::string_view());
  if (bytes.size() != size) wrong(column, std::to_string(size) + " bytes");
  return bytes;
}

bool Statement::null() {
  if (sqlite3_column_type(handle_, column_) != SQLITE_NULL) return false;
  ++column_;
  return true;
}

} // namespace sources::database
