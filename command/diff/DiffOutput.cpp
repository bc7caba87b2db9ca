#include "command/diff/DiffOutput.h"

#include "command/Notes.h"

#include <unistd.h>

namespace command {

namespace {

template <class Family>
constexpr const char* familyKey = std::is_same_v<Family, Rova::Ip4Family> ? "ipv4" : "ipv6";
template <class Family>
constexpr const char* familyName = std::is_same_v<Family, Rova::Ip4Family> ? "IPv4" : "IPv6";

/// Prints each line behind a sign.
void printLines(scrivo::Printer& out, const char* sign, std::string_view lines) {
  while (!lines.empty()) {
    const auto length = std::min(lines.find('\n'), lines.size());
    out.addFrills("%s%s\n", sign, scrivo::verbatim(lines.substr(0, length)));
    lines.remove_prefix(std::min(length + 1, lines.size()));
  }
}

template <class Family>
void printText(const RouteDifference<Family>& difference) {
  scrivo::Printer out(STDOUT_FILENO, scrivo::textFormat);
  for (const auto& change : difference.changes) {
    if (change.from) printLines(out, "-", difference.from.text().entry(*change.from));
    if (change.to) printLines(out, "+", difference.to.text().entry(*change.to));
  }
  out.close();
}

/// The members of an object, each on a line of its own, that others have printed as JSON.
class Members {
 public:
  void begin() {
    out_.addFrills("%s\n", isFirst_ ? "" : ",");
    isFirst_ = false;
  }
  void add(std::string_view json) { out_.addFrills("%s", scrivo::verbatim(json)); }
  void end() { out_.close(); }

 private:
  /// Text as it is, and no model: that is made already.
  scrivo::Printer out_{STDOUT_FILENO, scrivo::textFormat};
  bool isFirst_ = true;
};

/// `"PREFIX":{...}` taken apart: a prefix has no quotes in it.
struct Member {
  explicit Member(std::string_view entry)
      : name(entry.substr(0, entry.find("\":") + 2)), value(entry.substr(name.size())) {}
  std::string_view name, value;
};

template <class Family>
void printModel(scrivo::Printer& frame, const RouteDifference<Family>& difference) {
  const auto before = [&](const auto& change) {
    return difference.from.model().entry(*change.from);
  };
  const auto after = [&](const auto& change) { return difference.to.model().entry(*change.to); };
  const auto printAll = [&](const char* name, auto&& print) {
    frame.startDict(name);
    frame.ioflush();
    Members members;
    for (const auto& change : difference.changes) print(change, members);
    members.end();
    frame.endDict();
  };
  printAll("added", [&](const auto& change, Members& members) {
    if (change.from) return;
    members.begin();
    members.add(after(change));
  });
  printAll("removed", [&](const auto& change, Members& members) {
    if (change.to) return;
    members.begin();
    members.add(before(change));
  });
  printAll("changed", [&](const auto& change, Members& members) {
    if (!change.from || !change.to) return;
    const Member from(before(change)), to(after(change));
    members.begin();
    members.add(from.name);
    members.add("{\"from\":");
    members.add(from.value);
    members.add(",\"to\":");
    members.add(to.value);
    members.add("}");
  });
}

} // namespace

DiffOutput::DiffOutput(OutputFormat format, bool countsAlone)
    : frame_(STDOUT_FILENO, format), countsAlone_(countsAlone) {}

void DiffOutput::startWith(const DiffSources& sources) {
  frame_.start();
  addSource("from", sources.from);
  addSource("to", sources.to);
  frame_.startDict("vrfs");
}

void DiffOutput::addSource(const char* name, const NamedState& source) {
  scrivo::StringAttrInfo sourceName(frame_, "source");
  sourceName.setValue(Lumo::String(source.name));
  frame_.startSubmodel(name);
  frame_.addAttributes("", 1, sourceName.getArg());
  printNotes(frame_, source.state.notes);
  frame_.endSubmodel();
}

template <class Family>
void DiffOutput::print(const std::string& vrf, const RouteDifference<Family>& difference) {
  if (difference.changes.empty()) return;
  vrfIs(vrf);
  if (countsAlone_) return printCounts<Family>(difference.changes);
  frame_.startDict(familyKey<Family>);
  frame_.ioflush();
  frame_.format() == scrivo::textFormat ? printText(difference) : printModel(frame_, difference);
  frame_.endDict();
}

template <class Family>
void DiffOutput::printCounts(const std::vector<RouteChange<Family>>& changes) {
  std::uint32_t counts[3] = {};
  for (const auto& change : changes) ++counts[!change.from ? 0 : !change.to ? 1 : 2];
  scrivo::UintAttrInfo added(frame_, "added"), removed(frame_, "removed"),
      changed(frame_, "changed");
  added.setValue(counts[0]);
  removed.setValue(counts[1]);
  changed.setValue(counts[2]);
  frame_.startSubmodel(familyKey<Family>);
  frame_.addFrills("  %s: ", familyName<Family>);
  frame_.addAttributes("%u added, %u removed, %u changed\n", 3, added.getArg(), removed.getArg(),
                       changed.getArg());
  frame_.endSubmodel();
}

/// The heading of a VRF stands above what there is of it alone.
void DiffOutput::vrfIs(const std::string& name) {
  if (name == vrf_) return;
  frame_.addFrills("%sVRF: %s\n", vrf_ ? "\n" : "", scrivo::asValue(name));
  endVrf();
  vrf_ = name;
  scrivo::StringAttrInfo key(frame_, "vrf");
  key.setValue(Lumo::String(name));
  frame_.startDictEntry(key);
}

void DiffOutput::endVrf() {
  if (vrf_) frame_.endDictEntry();
}

void DiffOutput::end() {
  endVrf();
  frame_.endDict();
  frame_.end();
  frame_.close();
}

template void DiffOutput::print(const std::string&, const RouteDifference<Rova::Ip4Family>&);
template void DiffOutput::print(const std::string&, const RouteDifference<Rova::Ip6Family>&);

} // namespace command
