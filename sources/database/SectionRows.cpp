#include "sources/database/SectionRows.h"

#include "sources/database/ReplaceRows.h"
#include "sources/snapshot/Parts.h"

#include <algorithm>
#include <map>

namespace sources::database {

namespace {

bool needsAddressConfig(const Needs& needs) { return needs.addressConfig; }
bool needsNexthopGroups(const Needs& needs) { return needs.nexthopGroups; }

/// The sections of a snapshot that are no shared tables, and who needs them.
struct Section {
  std::string_view name;
  bool (*isNeeded)(const Needs& needs) = nullptr; ///< null for everybody
};
constexpr Section sections[] = {
    {"allIntfConfig", [](const Needs& needs) { return needs.descriptions; }},
    {"ipStatus", [](const Needs& needs) { return needs.ip4 || needs.addressConfig; }},
    {"ip6Status", [](const Needs& needs) { return needs.ip6 || needs.addressConfig; }},
    {"ipConfig", needsAddressConfig},
    {"ip6Config", needsAddressConfig},
    {"routeDistinguisherInputDir", needsAddressConfig},
    {"nhgConfig", needsNexthopGroups},
    {"nhgHwStatus", needsNexthopGroups},
    {"routingHardwareStatus"},
    {"routing6HardwareStatus"},
    {"tunnelFib"},
    {"evpnVxlanTunnelTable"},
    {"tunnelTableDir"},
    {"srTePolicyStatus"},
};

} // namespace

void replaceSections(Connection& connection, ChangeLog& log, const state::DeviceState& device) {
  std::map<std::string, std::string> old, now;
  Statement select(connection, "select name, json from section");
  while (select.step()) {
    const std::string name(select.text("name"));
    old[name] = select.text("json");
  }
  for (const Section& section : sections) {
    auto text = snapshot::sectionText(device, section.name);
    if (!text.empty()) now[std::string(section.name)] = std::move(text);
  }
  Statement insert(connection, "insert or replace into section values (?, ?)");
  Statement remove(connection, "delete from section where name = ?");
  replaceRows(
      old, now,
      [&](const std::string& name, const std::string& json) {
        insert.bindText(name).bindText(json).run();
        log.other(name);
      },
      [&](const std::string& name) {
        remove.bindText(name).run();
        log.other(name);
      });
}

void replaceSection(Connection& connection, ChangeLog& log, const state::DeviceState& device,
                    const char* name) {
  const auto text = snapshot::sectionText(device, name);
  Statement same(connection, "select 1 from section where name = ? and json = ?");
  const Run run(same);
  if (same.bindText(name).bindText(text).step()) return;
  Statement insert(connection, text.empty() ? "delete from section where name = ?"
                                            : "insert or replace into section values (?, ?)");
  insert.bindText(name);
  if (!text.empty()) insert.bindText(text);
  insert.run();
  log.other(name);
}

std::string sectionMembers(Connection& connection, const Needs& needs) {
  std::string text;
  Statement select(connection, "select name, json from section");
  while (select.step()) {
    const auto found = select.text("name");
    const auto section = std::ranges::find(sections, found, &Section::name);
    if (section == std::end(sections)) select.wrong("name", "a section");
    if (section->isNeeded && !section->isNeeded(needs)) continue;
    text += ",\"" + std::string(found) + "\":";
    text += select.text("json");
  }
  return text;
}

} // namespace sources::database
