#include "agent/Store.h"

#include "agent/LogLine.h"
#include "vanta/VantaBase.h"

#include <new>
#include <sqlite3.h>
#include <sys/stat.h>

namespace agent {

namespace {

using namespace sources::database;
using std::chrono::steady_clock;

bool isDamage(const SqliteError& error) {
  return error.code() == SQLITE_CORRUPT || error.code() == SQLITE_NOTADB;
}

/// Whether it may pass by itself.
bool isPassing(const SqliteError& error) {
  return error.code() == SQLITE_FULL || error.code() == SQLITE_IOERR;
}

} // namespace

Store::Store(std::string path, const Rights& rights, Log log, std::function<void()> pulse)
    : path_(std::move(path)), rights_(rights), log_(log), lock_(path_), pulse_(std::move(pulse)) {
  if (lock_.isOwn()) rights_.giveDatabase(path_);
  rights_.giveFile(path_ + "-lock");
}

void Store::open() {
  struct stat status {};
  // The log of a file that is gone belongs to nothing any more.
  if (lock_.isOwn() && stat(path_.c_str(), &status) != 0) removeFiles(path_);
  writer_.emplace(path_, log_);
  writer_->checkpointByHand();
  writer_->connection().onSteps(pulse_);
  lock_.marksOwn();
  rights_.giveDatabase(path_);
  if (stat(path_.c_str(), &status) == 0) {
    device_ = status.st_dev;
    file_ = status.st_ino;
  }
}

bool Store::attempt(const std::function<void(Writer&)>& write) {
  const bool isDone = tryTo(write);
  if (isDone) lock_.beat();
  return isDone;
}

bool Store::tryTo(const std::function<void(Writer&)>& write) {
  try {
    if (!writer_) open();
    write(*writer_);
    if (retryAt_) LogLine("recovered").with("state", path_);
    retryAt_.reset();
    backoff_.reset();
    return true;
  } catch (const SqliteError& error) {
    // Without memory there is one way to end, for SQLite too, which does not take it itself.
    if (error.code() == SQLITE_NOMEM) std::get_new_handler()();
    if (!lock_.isOwn() && !isPassing(error)) throw;
    failed(error.what(), isDamage(error));
  } catch (const WrongColumn& wrong) {
    failed(wrong.what(), true);
  } catch (const Tembra::CorruptionDetectedException& corruption) {
    failed(corruption.what(), true);
  } catch (const sources::SourceError& error) {
    if (!lock_.isOwn()) throw;
    failed(error.what(), false);
  }
  return false;
}

void Store::failed(const std::string& what, bool damaged) {
  writer_.reset();
  if (!retryAt_ || damaged) {
    LogLine("trouble").with("what", what).with("remedy", damaged ? "start anew" : "try again");
  }
  if (damaged) removeFiles(path_);
  retryAt_ = backoff_.next(steady_clock::now());
}

bool Store::isInPlace() {
  struct stat status {};
  if (!writer_) return true; // the next attempt looks for it
  const bool found = stat(path_.c_str(), &status) == 0;
  if (found && status.st_dev == device_ && status.st_ino == file_) return true;
  LogLine("trouble").with("what", path_ + ": the file was taken away").with("remedy", "start anew");
  writer_.reset();
  return false;
}

void Store::checkpoint() {
  const Time now = steady_clock::now();
  if (!writer_ || now < checkpointAt_) return;
  tryTo([&](Writer& writer) {
    // Readers that did not end in time may do so in the next second.
    if (!writer.checkpoint()) checkpointAt_ = now + std::chrono::seconds(2);
  });
}

} // namespace agent
