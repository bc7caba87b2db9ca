#include "command/StaticLines.h"

#include "command/Notes.h"
#include "rova/CliSupport.h"
#include "scrivo/Printer.h"

#include <algorithm>
#include <string_view>
#include <unistd.h>
#include <unordered_set>

namespace command {

std::string routeCommand(const StaticFamily& family, const L3::VrfName& vrf) {
  const std::string words(family.words);
  if (vrf.stringValue() == L3::defaultVrfName) return words;
  return words + "vrf " + vrf.stringValue().str() + " ";
}

Lines splitLines(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const auto length = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, length));
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  return lines;
}

Lines staticLines(const state::VrfState& vrf, bool saveAll) {
  Lines lines;
  for (const auto& family : staticFamilies) {
    const auto& config = vrf.*family.config;
    if (!config) continue;
    Rova::StaticRoutesCliSaver saver;
    const auto text =
        saver.save(config, saveAll, routeCommand(family, vrf.name), Rova::RovaConsts());
    for (auto& line : splitLines(text.str())) lines.push_back(std::move(line));
  }
  return lines;
}

Lines linesWithout(const Lines& lines, const Lines& others) {
  const std::unordered_set<std::string_view> known(others.begin(), others.end());
  Lines missing;
  for (const auto& line : lines) {
    if (!known.contains(line)) missing.push_back(line);
  }
  return missing;
}

void printLines(const Lines& lines, const Options& options, const sources::Notes& notes) {
  scrivo::Printer printer(STDOUT_FILENO, options.format);
  scrivo::StringAttrInfo shown(printer, "");
  printer.start();
  printNotes(printer, notes);
  printer.startList("lines");
  for (const auto& line : lines) {
    shown.setValue(line);
    printer.addAttributes("%s\n", 1, shown.getArg());
  }
  printer.endList();
  printer.end();
  printer.close();
}

} // namespace command
