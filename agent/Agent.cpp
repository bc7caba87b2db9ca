#include "agent/Agent.h"

#include "agent/LogLine.h"
#include "agent/WriteChanges.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <linux/rtnetlink.h>
#include <poll.h>
#include <sys/stat.h>

namespace agent {

namespace {

using namespace sources::database;
using sources::kernel::Heard;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr const char* atStart = "start";
constexpr milliseconds gathering{100};
constexpr std::size_t mostChanges = 5000;
constexpr milliseconds heartbeat{1000};
/// How long a table that goes on moving is read again at a time.
constexpr milliseconds patience{2000};

/// Tests make the room for notifications small.
int roomForNotifications() {
  const char* const bytes = std::getenv("ROVA_AGENT_ROOM");
  return bytes ? std::atoi(bytes) : 32 * 1024 * 1024;
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

bool isAnything(const Heard& heard) {
  return heard.routes || heard.neighbours || heard.others || heard.lost;
}

std::int64_t since(Time begin) {
  return std::chrono::duration_cast<milliseconds>(steady_clock::now() - begin).count();
}

} // namespace

bool isIn(const std::string& netns) {
  struct stat named {
  }, own{};
  return stat(("/run/netns/" + netns).c_str(), &named) == 0 &&
         stat("/proc/self/ns/net", &own) == 0 && named.st_dev == own.st_dev &&
         named.st_ino == own.st_ino;
}

Agent::Agent(const Options& options, const Rights& rights, ServiceManager& manager)
    : options_(options),
      manager_(manager),
      store_(options.state, rights, options.once ? Log::joined : Log::kept, [this] { pulse(); }),
      kernel_(roomForNotifications()),
      feed_(kernel_, [this] { beat(); }),
      follower_(feed_, {}) {
  // Whether packets are forwarded is part of the state too.
  for (const unsigned group : {RTNLGRP_IPV4_NETCONF, RTNLGRP_IPV6_NETCONF}) kernel_.follow(group);
  facts_.source = options.netns.empty() ? "kernel" : "kernel:" + options.netns;
  facts_.boot = bootId();
  facts_.network = networkNamespace();
  facts_.agent = getpid();
  facts_.agentSince = timeNow();
}

void Agent::run() {
  begin();
  while (ended_ == 0) step();
  end();
}

void Agent::runOnce() {
  load(atStart);
  facts_.stopped = timeNow();
  if (behind_) writeAll(); // a damaged file was started anew
  if (behind_) throw sources::SourceError(options_.state + ": cannot be written");
}

void Agent::begin() {
  LogLine("started")
      .with("source", facts_.source)
      .with("state", options_.state)
      .with("pid", getpid());
  store_.attempt([&](Writer& writer) {
    const Facts before = readFacts(writer.connection());
    facts_.changed = before.changed;
    facts_.synchronised = before.synchronised;
    facts_.reason = before.reason;
    writer.tell(facts_);
  });
  load(atStart);
}

/// False when the kernel refuses what it gave before, which it may do for a while: the tables stay
/// as they are, and not known to be whole.
bool Agent::read(const std::string& reason) {
  try {
    follower_.read(patience);
    refusal_.clear();
    return true;
  } catch (const sources::SourceError& error) {
    if (reason == atStart) throw;
    if (std::exchange(refusal_, error.what()) != refusal_) {
      LogLine("trouble").with("what", refusal_).with("remedy", "try again");
    }
    return false;
  }
}

void Agent::load(const std::string& reason) {
  const Time begin = steady_clock::now();
  if (!read(reason)) {
    doubt_ = reason;
    behind_ = true; // what was brought in for the dump is in no batch
    return;
  }
  listen();
  facts_.synchronised = timeNow();
  facts_.reason = reason;
  if (!writeAll()) return;
  const auto routes = follower_.routes<sources::kernel::Ip4>().size() +
                      follower_.routes<sources::kernel::Ip6>().size();
  LogLine(reason == atStart ? "loaded" : "resynchronised")
      .with("reason", reason)
      .with("routes", static_cast<std::int64_t>(routes))
      .with("changed", static_cast<std::int64_t>(rows_))
      .with("ms", since(begin));
}

void Agent::resynchronise(const std::string& reason) {
  if (std::exchange(facts_.wholeSince, 0) != 0) {
    store_.attempt([&](Writer& writer) { writer.tell(facts_); });
  }
  if (reason == asked_) follower_.doubt();
  asked_.clear();
  load(reason);
  rereadAt_ = rereads_.next(steady_clock::now());
}

void Agent::step() {
  wait(nextEvent());
  heedSignals();
  if (ended_ != 0) return;
  listen();
  const Time now = steady_clock::now();
  if (const auto reason = reasonToRead(now)) {
    resynchronise(*reason);
  } else if (isDue(now)) {
    writeBatch();
  }
  if (!store_.retryAt()) store_.checkpoint();
  beat();
}

void Agent::listen() {
  const Heard heard = follower_.listen();
  if (!isAnything(heard)) return;
  heard_.add(heard);
  if (heard.lost) doubt_ = "messages were lost";
  if (heard.others && doubt_.empty()) doubt_ = "routes changed without a word";
  if (!batchEnds_) batchEnds_ = steady_clock::now() + gathering;
}

bool Agent::isDue(Time now) const {
  if (store_.retryAt()) return now >= *store_.retryAt();
  return behind_ || (batchEnds_ && (now >= *batchEnds_ || heard_.changes >= mostChanges));
}

/// Why tables are to be read again now; nothing while they need not, or were just a moment ago.
std::optional<std::string> Agent::reasonToRead(Time now) const {
  if (!asked_.empty()) return asked_;
  if (now < rereadAt_ || follower_.moved().empty()) return {};
  // What tells that something is missing has told more than that.
  if (batchEnds_ && now < *batchEnds_) return {};
  return doubt_.empty() ? "a dump was interrupted" : doubt_;
}

Time Agent::nextEvent() const {
  Time next = beatAt_;
  if (batchEnds_) next = std::min(next, *batchEnds_);
  if (store_.retryAt()) next = std::min(next, *store_.retryAt());
  if (!follower_.moved().empty()) {
    next = std::min(next, std::max(rereadAt_, batchEnds_.value_or(rereadAt_)));
  }
  return next;
}

void Agent::wait(Time until) {
  pollfd files[] = {{signals_.descriptor(), POLLIN, 0}, {kernel_.descriptor(), POLLIN, 0}};
  // A wait that ends a moment early would only be followed by another one.
  const auto left = std::chrono::ceil<milliseconds>(until - steady_clock::now());
  poll(files, std::size(files), static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
}

void Agent::heedSignals() {
  while (const int number = signals_.next()) {
    if (number == SIGHUP) {
      asked_ = "asked by SIGHUP";
    } else {
      ended_ = number;
    }
  }
}

void Agent::writeBatch() {
  const bool changesOnly = !behind_ && !heard_.others && !heard_.lost;
  if (!changesOnly || !writeChanges()) writeAll();
}

bool Agent::writeChanges() {
  const auto changes = device_.change(follower_);
  if (!changes) return false;
  settle();
  behind_ = !store_.attempt([&](Writer& writer) {
    Batch batch(writer);
    agent::writeChanges(*changes, batch);
    batch.commit(facts_);
  });
  return true;
}

/// What was heard is about to be written.
void Agent::settle() {
  const auto moved = follower_.moved();
  if (isAnything(heard_)) facts_.changed = timeNow();
  if (moved.empty()) {
    rereads_.reset();
    doubt_.clear();
    if (facts_.wholeSince == 0) facts_.wholeSince = timeNow();
  } else {
    if (facts_.wholeSince != 0) LogLine("moving").with("tables", joined(moved));
    facts_.wholeSince = 0;
  }
  heard_ = {};
  batchEnds_.reset();
}

bool Agent::writeAll() {
  settle();
  behind_ = !store_.attempt([&](Writer& writer) {
    if (!std::exchange(knowsFecs_, true)) {
      writer.visitFecs([&](const auto& fec) { device_.numbers().keep(fec); },
                       [&](const auto& fec) { device_.numbers().keep(fec); });
    }
    const auto device = device_.make(follower_, sources::kernel::readForwarding());
    const Changes changes = writer.replace(device, facts_, device_.facts());
    rows_ = changes.entered + changes.removed;
  });
  if (!behind_) manager_.ready();
  return !behind_;
}

bool Agent::tellAlive(Time now) {
  if (now < beatAt_) return false;
  beatAt_ = now + heartbeat;
  store_.beat();
  manager_.alive();
  return true;
}

void Agent::beat() {
  if (!tellAlive(steady_clock::now())) return;
  requireNamespace();
  if (!store_.isInPlace()) behind_ = true;
}

/// Amid a statement: what is notified is taken in before there is no room for it.
void Agent::pulse() noexcept {
  const Time now = steady_clock::now();
  tellAlive(now);
  if (now < pulseAt_) return;
  pulseAt_ = now + milliseconds(10);
  listen();
}

void Agent::requireNamespace() const {
  if (options_.netns.empty() || isIn(options_.netns)) return;
  throw sources::SourceError("network namespace \"" + options_.netns + "\" is gone");
}

void Agent::end() {
  manager_.stopping();
  listen();
  if (heard_.changes != 0) writeBatch();
  facts_.stopped = timeNow();
  store_.attempt([&](Writer& writer) { writer.tell(facts_); });
  LogLine("stopped").with("signal", ended_ == SIGTERM ? "SIGTERM" : "SIGINT");
}

} // namespace agent
