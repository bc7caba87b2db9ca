// SQLite as objects: a connection, a statement, and the columns of a row, each held against what it
// may be.
#pragma once

#include "sources/SourceError.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

struct sqlite3;
struct sqlite3_stmt;

namespace sources::database {

/// What SQLite reports of a file, in its words.
class SqliteError : public SourceError {
 public:
  SqliteError(const std::string& path, const std::string& message, int code)
      : SourceError(path + ": " + message), reason_(message), code_(code) {}
  /// The message without the file.
  const std::string& reason() const { return reason_; }
  /// SQLITE_FULL and the like, without the extension.
  int code() const { return code_ & 0xff; }

 private:
  std::string reason_;
  int code_;
};

/// A column of a row is not what its writer puts there: the file is damaged.
class WrongColumn : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class Access {
  read,      ///< beside a writer
  unchanged, ///< of a file that nobody writes and whose writer has left nothing behind
  write      ///< creates the file where there is none
};

/// An open database. A statement on a damaged file ends after as many steps as a whole file of its
/// size could need.
class Connection {
 public:
  static constexpr int waitForWriter = 10'000; ///< ms, as long as a checkpoint may take

  /// Raises `SqliteError`.
  Connection(const std::string& path, Access access);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  void execute(const std::string& statements);
  /// The one number that a statement gives.
  std::int64_t number(const std::string& statement);
  [[noreturn]] void fail() const;

  sqlite3* handle() const { return handle_; }
  const std::string& path() const { return path_; }
  void refillBudget() { spent_ = 0; }
  /// Grants statements what a file of the size by now could need.
  void measure();
  /// Calls `pulse` every few thousand steps of a statement; it raises nothing, and does not use the
  /// connection.
  void onSteps(std::function<void()> pulse) { pulse_ = std::move(pulse); }

 private:
  static int spend(void* connection);
  void guard();

  std::string path_;
  sqlite3* handle_ = nullptr;
  std::int64_t budget_ = 0; ///< in thousands of steps
  std::int64_t spent_ = 0;
  std::function<void()> pulse_;
};

/// A prepared statement.
class Statement {
 public:
  /// Raises `SqliteError`, as everything here does.
  Statement(Connection& connection, const std::string& text);
  ~Statement();
  Statement(Statement&& other) noexcept;
  Statement& operator=(Statement&&) = delete;

  /// Binds the next parameter.
  Statement& bind(std::int64_t value);
  Statement& bindText(std::string_view text);
  Statement& bindBlob(std::string_view bytes);
  Statement& bindNull();

  /// Moves to the next row; false, and ready to be bound anew, when there is none.
  bool step();
  /// For a statement without rows.
  void run() { step(); }
  /// Ready to be bound anew, whatever rows there are left.
  void reset();

  /// The next column of the row: each checks that it is such a value, and raises `WrongColumn`.
  std::uint64_t number(const char* column, std::uint64_t max);
  std::int64_t integer(const char* column);
  std::string_view text(const char* column);
  std::string_view blob(const char* column);
  std::string_view blob(const char* column, std::size_t size);
  /// Whether the next column is null; if so it is read.
  bool null();
  /// Reads the row's columns from the first again.
  void rewind() { column_ = 0; }
  /// Raises `WrongColumn` for the column that was read last.
  [[noreturn]] void wrong(const char* column, const std::string& expected) const;

 private:
  void check(int result);

  Connection& connection_;
  sqlite3_stmt* handle_ = nullptr;
  int parameter_ = 0;
  int column_ = 0;
};

/// Ends a statement's run however its rows were left.
class Run {
 public:
  explicit Run(Statement& statement) : statement_(statement) {}
  ~Run() { statement_.reset(); }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

 private:
  Statement& statement_;
};

} // namespace sources::database
