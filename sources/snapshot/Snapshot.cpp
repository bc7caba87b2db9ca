#include "sources/snapshot/Snapshot.h"

#include "Sections.h"
#include "sources/snapshot/File.h"
#include "sources/snapshot/FileWriter.h"

namespace sources::snapshot {

namespace {

/// The format's version. A text of another version is refused.
constexpr std::uint64_t formatVersion = 1;

Section versionSection() {
  const Section section = {
      "rovaSnapshot",
      [](Node& node, Target&) { node.number(formatVersion, formatVersion); },
      nullptr,
      [](Output& out, const state::DeviceState&) { out.number(formatVersion); },
  };
  return section.asRequired();
}

/// `text` has the reader's padding behind it.
state::DeviceState loadPadded(std::string_view text, const std::string& name, const Needs& needs,
                              Progress* progress) {
  Input input(name, text, progress);
  Target target;
  target.wantsConfigured = needs.configured;
  input.readRoot([&](Node& root) { readFields(root, sections(), target); });
  return std::move(target.state);
}

void write(Output::Sink sink, const state::DeviceState& device) {
  Output out(std::move(sink));
  writeFields(out, sections(), device, Output::Layout::lines);
  out.finish();
}

} // namespace

std::span<const Section> sections() {
  static const Section all[] = {
      versionSection(),
      vrfsSection(),
      forwardingSection(),
      forwarding6Section(),
      policyForwardingSection(),
      intfConfigSection(),
      ipSection(),
      ip6Section(),
      ipConfigSection(),
      ip6ConfigSection(),
      arpSection(),
      routeDistinguisherSection(),
      nhgConfigSection(),
      nhEntrySection(),
      nhgHwSection(),
      counterKeySection(),
      counterSection(),
      counterSnapshotSection(),
      hardwareSection(),
      hardware6Section(),
      tunnelFibSection(),
      evpnVxlanSection(),
      tunnelDirSection(),
      srTePolicySection(),
  };
  return all;
}

state::DeviceState load(const std::string& path, const Needs& needs, Progress* progress) {
  return loadPadded(readFile(path, Input::padding).text(), inputName(path), needs, progress);
}

state::DeviceState loadText(std::string_view text, const std::string& name) {
  const std::string padded = std::string(text) + std::string(Input::padding, '\0');
  return loadPadded(std::string_view(padded).substr(0, text.size()), name, {}, nullptr);
}

void save(const state::DeviceState& device, const std::string& path) {
  FileWriter file(path);
  save(device, file);
  file.commit();
}

void save(const state::DeviceState& device, FileWriter& file) {
  write([&](std::string_view bytes) { file.write(bytes); }, device);
  file.finish();
}

std::string saveText(const state::DeviceState& device) {
  std::string text;
  write([&](std::string_view bytes) { text += bytes; }, device);
  return text;
}

} // namespace sources::snapshot
