// What `diff` prints: lines, a document, or counts alone.
#pragma once

#include "command/Options.h"
#include "command/diff/DiffRoutes.h"
#include "command/diff/DiffSources.h"

#include <optional>
#include <string>

namespace command {

/// On standard output. What it does raises the printer's errors.
class DiffOutput {
 public:
  DiffOutput(OutputFormat format, bool countsAlone);

  /// Tells of the sources, ahead of all routes.
  void startWith(const DiffSources& sources);
  /// Prints the difference of one VRF, if there is any. Those of the families of a VRF follow each
  /// other.
  template <class Family>
  void print(const std::string& vrf, const RouteDifference<Family>& difference);
  void end();

 private:
  void addSource(const char* name, const NamedState& source);
  void vrfIs(const std::string& name);
  void endVrf();
  template <class Family>
  void printCounts(const std::vector<RouteChange<Family>>& changes);

  scrivo::Printer frame_; ///< around the routes, which go past it
  bool countsAlone_;
  std::optional<std::string> vrf_ = {}; ///< whose routes are being printed
};

} // namespace command
