// The lines of a watcher: listings, and what changes in them. Text is for people; of JSON each line
// is an object.
//
//   lines.beginListing({seq, time}, "default");
//   lines.listed(entry);
//   lines.endListing();
//   lines.change({seq, time}, "default", Op::changed, "10.0.0.0/8", entry);
//   lines.settle({seq, time});
//   lines.write();
#pragma once

#include "command/Options.h"
#include "command/watch/ToldRoutes.h"
#include "command/watch/WatchedLog.h"
#include "scrivo/Printer.h"

#include <string>

namespace command {

class WatchLines {
 public:
  explicit WatchLines(OutputFormat format);

  void beginListing(const Stamp& stamp, const std::string& vrf);
  void listed(std::string_view entry);
  void endListing();

  /// `entry` is that of the route by now, or empty. Who goes on from the stamp's number misses
  /// nothing behind that line.
  void change(const Stamp& stamp, const std::string& vrf, Op op, std::string_view prefix,
              std::string_view entry);
  void gap(const Stamp& stamp, const std::string& reason);

  /// All changes up to that stamp are told, which the last of them gets.
  void settle(const Stamp& stamp);

  /// Whether it is time to write what waits, of which there is a bounded amount then.
  bool isFull() const { return text_.size() > enough; }
  /// Writes what waits, which may take as long as its reader likes. Raises `sigintException` when
  /// the reader is gone, and `WriteException`.
  void write();

 private:
  static constexpr std::size_t enough = 64 * 1024;

  /// A change that waits for the one behind it.
  struct Pending {
    Stamp stamp;
    std::string vrf;
    Op op;
    std::string prefix, entry;
  };

  bool isText() const { return format_ == command::text; }
  void begin(const Stamp& stamp);
  void tell(const Pending& change);
  void tellText(const Pending& change);
  void addEntry(std::string_view entry);

  const OutputFormat format_;
  scrivo::Printer out_;
  std::string text_;
  std::string vrf_; ///< that the lines of text speak of
  const char* separator_ = "";
  std::optional<Pending> pending_; ///< the last change, which may be the last of many
};

} // namespace command
