#include "command/watch/WatchLines.h"

#include "scrivo/Shown.h"
#include "sources/database/Facts.h"
#include "sources/snapshot/Parts.h"

#include <unistd.h>

namespace command {

namespace {

struct OpWords {
  const char* mark; ///< ahead of a line
  const char* word;
};
constexpr OpWords opWords[] = {{"+ ", "added"}, {"- ", "removed"}, {"~ ", "changed"}};

const OpWords& wordsOf(Op op) { return opWords[static_cast<int>(op)]; }

/// RFC 3339 with milliseconds.
std::string preciseTime(std::int64_t time) {
  auto text = sources::database::timeText(time);
  const auto fraction = std::to_string(1000 + time % 1000);
  text.replace(text.size() - 1, 1, "." + fraction.substr(1) + "Z");
  return text;
}

std::string member(const char* name, std::string_view text) {
  return std::string(",\"") + name + "\":" + sources::snapshot::quotedText(text);
}

/// An entry's object, without the prefix ahead of it.
std::string_view objectOf(std::string_view entry) {
  return entry.substr(std::min(entry.find(":{") + 1, entry.size()));
}

} // namespace

WatchLines::WatchLines(OutputFormat format)
    : format_(format), out_(STDOUT_FILENO, scrivo::textFormat) {}

void WatchLines::begin(const Stamp& stamp) {
  text_ +=
      "{\"seq\":" + std::to_string(stamp.seq) + ",\"time\":\"" + preciseTime(stamp.time) + "\"";
}

void WatchLines::beginListing(const Stamp& stamp, const std::string& vrf) {
  if (isText()) {
    text_ += "VRF: " + scrivo::shown(vrf) + "\n";
    vrf_ = vrf;
    return;
  }
  begin(stamp);
  text_ += member("vrf", vrf) + member("op", "listing") + ",\"routes\":{";
  separator_ = "";
}

void WatchLines::listed(std::string_view entry) {
  if (!isText()) text_ += std::exchange(separator_, ",");
  addEntry(entry);
}

void WatchLines::endListing() { text_ += isText() ? "\n" : "}}\n"; }

/// An entry of the model may go on over lines, which are no more than blanks there.
void WatchLines::addEntry(std::string_view entry) {
  if (isText()) {
    text_ += entry;
    if (!entry.ends_with('\n')) text_ += '\n';
    return;
  }
  for (const char c : entry) {
    if (c != '\n') text_ += c;
  }
}

void WatchLines::change(const Stamp& stamp, const std::string& vrf, Op op, std::string_view prefix,
                        std::string_view entry) {
  if (pending_) tell(*pending_);
  pending_ = {stamp, vrf, op, std::string(prefix), std::string(entry)};
}

void WatchLines::settle(const Stamp& stamp) {
  if (pending_) {
    pending_->stamp = stamp;
    tell(*pending_);
  }
  pending_.reset();
}

void WatchLines::tell(const Pending& change) {
  if (isText()) return tellText(change);
  begin(change.stamp);
  text_ += member("vrf", change.vrf) + member("op", wordsOf(change.op).word) +
           member("prefix", change.prefix);
  if (!change.entry.empty()) {
    text_ += ",\"route\":";
    addEntry(objectOf(change.entry));
  }
  text_ += "}\n";
}

/// Each line of a route with the mark ahead.
void WatchLines::tellText(const Pending& change) {
  if (change.vrf != vrf_) text_ += "VRF: " + scrivo::shown(vrf_ = change.vrf) + "\n";
  const char* const mark = wordsOf(change.op).mark;
  std::string_view rest = change.entry.empty() ? std::string_view(change.prefix) : change.entry;
  while (!rest.empty()) {
    const auto line = rest.substr(0, rest.find('\n'));
    text_.append(mark).append(line).append("\n");
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
  }
}

void WatchLines::gap(const Stamp& stamp, const std::string& reason) {
  if (isText()) {
    text_ += "gap: " + reason + "\n";
    return;
  }
  begin(stamp);
  text_ += member("op", "gap") + member("reason", reason) + "}\n";
}

void WatchLines::write() {
  if (text_.empty()) return;
  out_.addFrills("%s", scrivo::verbatim(text_));
  text_.clear();
  out_.ioflush();
}

} // namespace command
