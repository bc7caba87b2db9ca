#include "command/StaticLoad.h"

#include "command/ChangedSnapshot.h"
#include "command/OpenState.h"
#include "command/OwnAddress.h"
#include "command/StaticLineParser.h"
#include "command/StaticLines.h"
#include "command/grammar/UsageError.h"
#include "rova/CliSupport.h"
#include "scrivo/Shown.h"
#include "sources/Source.h"
#include "sources/SourceError.h"
#include "sources/snapshot/File.h"
#include "state/NoSuch.h"

namespace command {

namespace {

/// What is wrong with a line of the file, with the line and a caret.
[[noreturn]] void failAtLine(const std::string& path, std::size_t number, const std::string& line,
                             const LineError& error) {
  const auto place = sources::inputName(path) + " line " + std::to_string(number) + ": ";
  throw std::runtime_error(scrivo::shown(place + error.what()) + withCaret(line, error.column));
}

/// Empty lines and those that are notes say nothing.
bool isNote(std::string_view line) {
  const auto first = line.find_first_not_of(' ');
  return first == line.npos || line[first] == '!' || line[first] == '#';
}

/// A route to the device itself would never forward.
void refuseOwnAddress(const StaticLine& line, const state::DeviceState& device) {
  const auto refusal = ownAddressRefusal(device, line.via.hop, line.vrf);
  if (refusal) throw LineError(*refusal, line.hopColumn);
}

Routing::ConfigGen& configOf(const StaticLine& line, const state::DeviceState& device) {
  const auto* const vrf = device.vrf(line.vrf);
  if (!vrf) throw LineError(state::noSuchVrf(device, line.vrf), line.vrfColumn);
  const auto& config = vrf->*staticFamilies[line.ip6 ? 1 : 0].config;
  if (!config) throw LineError("the configuration of VRF " + line.vrf + " is not known", 0);
  return *config;
}

/// Enters all lines; an error names the file, the line and the place in it.
void enterAll(const Lines& lines, const std::string& path, const state::DeviceState& device) {
  for (std::size_t number = 0; number < lines.size(); ++number) {
    if (isNote(lines[number])) continue;
    try {
      const auto line = parseStaticLine(lines[number]);
      auto& config = configOf(line, device);
      refuseOwnAddress(line, device);
      enterStaticLine(line, config);
    } catch (const LineError& error) {
      failAtLine(path, number + 1, lines[number], error);
    }
  }
}

Lines allLines(const state::DeviceState& device) {
  Lines lines;
  for (const auto& vrf : device.vrfs) {
    for (auto& line : staticLines(vrf, false)) lines.push_back(std::move(line));
  }
  return lines;
}

} // namespace

ExitStatus loadStatic(const grammar::Parsed& parsed, const Options& options) {
  const auto path = parsed.text("file");
  Options target = options;
  if (sources::isKernel(options.state)) target.state = options.into;
  if (target.state.empty()) {
    throw UsageError("rova: static load changes a snapshot: --into names the file of one");
  }
  if (path == "-" && target.state == "-") {
    throw UsageError("rova: static load cannot read both its lines and the snapshot from standard "
                     "input: one of them needs a file");
  }
  requireTarget("static load", target);
  // Read first: others need not wait for somebody to type them.
  const auto lines = splitLines(sources::snapshot::readFile(path).text());
  ChangedSnapshot changed(target);
  const auto device = openState(target).device;
  const auto before = allLines(device);
  enterAll(lines, path, device);
  changed.replace(device, linesWithout(allLines(device), before));
  return success;
}

} // namespace command
