#include "command/watch/WatchSource.h"

#include "command/Notes.h"
#include "command/OpenState.h"
#include "scrivo/Shown.h"
#include "sources/Source.h"

#include <cstdio>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace command {

namespace {

using sources::SourceError;
using std::chrono::steady_clock;

/// The database to watch, which an agent of one's own keeps for a kernel.
std::string databaseOf(const std::string& source, std::optional<agent::PrivateAgent>& agent) {
  if (sources::isKernel(source)) {
    agent.emplace(sources::kernelNamespace(source));
    return agent->state();
  }
  if (source != "-" && sources::database::isDatabase(source)) return source;
  if (source != "-" && access(source.c_str(), R_OK) != 0) {
    throw SourceError(source + ": cannot be read: " + Lumo::errorString(errno));
  }
  throw SourceError(sources::inputName(source) +
                    ": a snapshot does not change: expected a state database, kernel or "
                    "kernel:NAME; rova snapshot load makes a database of a snapshot");
}

void tellNotes(const sources::Notes& notes, const std::string& source) {
  for (const auto& line : linesOf(notes, source)) {
    std::fprintf(stderr, "rova: %s\n", scrivo::shown(line).c_str());
  }
}

constexpr std::chrono::seconds longestLack{10};
/// An agent gives a sign of life each second.
constexpr unsigned tellsSilenceAfter = 4;
constexpr int second = 1000; // ms

} // namespace

WatchSource::WatchSource(const Options& options, const sources::Needs& needs)
    : path_(databaseOf(options.state, agent_)), needs_(needs), commits_(path_) {
  load();
  tellNotes(state().notes, path_);
}

void WatchSource::load() {
  loaded_.reset();
  struct stat status {};
  if (stat(path_.c_str(), &status) == 0) {
    device_ = status.st_dev;
    file_ = status.st_ino;
  }
  loaded_.emplace(sources::database::loadWithLog(path_, needs_));
}

bool WatchSource::isOutdated() const {
  struct stat status {};
  if (!loaded_ || loaded_->isFixed) return true;
  return stat(path_.c_str(), &status) != 0 || status.st_dev != device_ || status.st_ino != file_;
}

bool WatchSource::reload() {
  try {
    load();
    lacking_.reset();
    return true;
  } catch (const SourceError&) {
    if (!lacking_) lacking_ = steady_clock::now();
    if (steady_clock::now() - *lacking_ > longestLack) throw;
    return false;
  }
}

bool WatchSource::wait() {
  pollfd files[] = {{commits_.descriptor(), POLLIN, 0},
                    {STDOUT_FILENO, 0, 0},
                    {agent_ ? agent_->descriptor() : -1, POLLIN, 0}};
  const int ready = poll(files, std::size(files), second);
  if (files[1].revents & (POLLERR | POLLHUP | POLLNVAL)) return false;
  if (files[2].revents) agent_->requireAlive();
  silentSeconds_ = ready == 0 ? silentSeconds_ + 1 : 0;
  if (silentSeconds_ == tellsSilenceAfter) tellSilence();
  commits_.clear();
  return true;
}

void WatchSource::tellSilence() {
  try {
    sources::Notes notes;
    notes.silence = sources::open(path_, namesAlone()).notes.silence;
    tellNotes(notes, path_);
  } catch (const SourceError&) {
    // Who opens the file again tells what is wrong with it.
  }
}

} // namespace command
