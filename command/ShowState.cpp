#include "command/ShowState.h"

#include "scrivo/Printer.h"
#include "sources/Source.h"
#include "sources/database/Database.h"
#include "sources/database/Lock.h"
#include "sources/snapshot/FileError.h"

#include <algorithm>
#include <unistd.h>

namespace command {

namespace {

using sources::database::Facts;
using sources::database::timeText;

/// Prints members of the document, each with a line of its own in text.
class StatePrinter {
 public:
  explicit StatePrinter(scrivo::Printer& printer) : printer_(printer) {}

  /// Nothing is printed for an empty text.
  void text(const char* label, const char* key, const std::string& value) {
    if (value.empty()) return;
    scrivo::StringAttrInfo info(printer_, key);
    info.setValue(value);
    printer_.addFrills("%-20s", label);
    printer_.addAttributes("%s\n", 1, info.getArg());
  }
  void number(const char* label, const char* key, std::int64_t value) {
    if (value == 0) return;
    scrivo::Uint64AttrInfo info(printer_, key);
    info.setValue(static_cast<std::uint64_t>(value));
    printer_.addFrills("%-20s", label);
    printer_.addAttributes("%llu\n", 1, info.getArg());
  }
  /// A time with its age.
  void time(const char* label, const char* key, const char* ageKey, std::int64_t value) {
    if (value == 0) return;
    scrivo::StringAttrInfo time(printer_, key);
    scrivo::Uint64AttrInfo age(printer_, ageKey);
    time.setValue(timeText(value));
    age.setValue(static_cast<std::uint64_t>(std::max<std::int64_t>(now_ - value, 0) / 1000));
    printer_.addFrills("%-20s", label);
    printer_.addAttributes("%s, %llu s ago\n", 2, time.getArg(), age.getArg());
  }

  void facts(const Facts& facts) {
    text("State of", "of", facts.source);
    text("Boot", "boot", facts.boot);
    text("Network namespace", "network", facts.network);
    time("Whole since", "wholeSince", "wholeSinceAge", facts.wholeSince);
    time("Last change", "changed", "changedAge", facts.changed);
    time("Last read anew", "synchronised", "synchronisedAge", facts.synchronised);
    text("Why", "reason", facts.reason);
  }

  void agent(const std::string& path, const Facts& facts) {
    if (facts.agent == 0) return;
    const auto writer = sources::database::liveWriter(path);
    text("Agent", "agent", writer ? "alive" : "gone");
    number("Process", "process", facts.agent);
    time("Running since", "agentSince", "agentSinceAge", facts.agentSince);
    if (!writer) time("Stopped", "stopped", "stoppedAge", facts.stopped);
  }

  void tables(const std::string& path) {
    scrivo::StringAttrInfo name(printer_, "table");
    scrivo::Uint64AttrInfo count(printer_, "rows"), bytes(printer_, "bytes");
    printer_.addFrills("\n%-20s %12s %14s\n", "Table", "Rows", "Bytes");
    printer_.startDict("tables");
    for (const auto& size : sources::database::tableSizes(path)) {
      name.setValue(size.table);
      count.setValue(static_cast<std::uint64_t>(size.rows));
      bytes.setValue(static_cast<std::uint64_t>(size.bytes));
      printer_.startDictEntry(name);
      printer_.addFrills("%-20s", scrivo::asValue(size.table));
      printer_.addAttributes(" %12llu %14llu\n", 2, count.getArg(), bytes.getArg());
      printer_.endDictEntry();
    }
    printer_.endDict();
  }

 private:
  scrivo::Printer& printer_;
  const std::int64_t now_ = sources::database::timeNow();
};

/// Raises `SourceError` for a file that cannot be read.
std::string kindOf(const std::string& source) {
  if (sources::isKernel(source)) return "kernel";
  if (source == "-") return "snapshot";
  if (access(source.c_str(), R_OK) != 0) sources::snapshot::failErrno(source, "cannot be read");
  return sources::database::isDatabase(source) ? "database" : "snapshot";
}

} // namespace

ExitStatus showState(const grammar::Parsed&, const Options& options) {
  const auto kind = kindOf(options.state);
  std::optional<Facts> facts;
  if (kind == "database") facts = sources::database::factsOf(options.state);
  scrivo::Printer printer(STDOUT_FILENO, options.format);
  printer.start();
  StatePrinter state(printer);
  state.text("Source", "source", options.state);
  state.text("Kind", "kind", kind);
  state.text("Chosen, since", "chosen", options.stateReason);
  if (facts) {
    state.facts(*facts);
    state.agent(options.state, *facts);
    state.tables(options.state);
  }
  printer.end();
  printer.close();
  return success;
}

} // namespace command
