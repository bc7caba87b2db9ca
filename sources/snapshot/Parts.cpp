#include "sources/snapshot/Parts.h"

#include "Escapes.h"
#include "Sections.h"
#include "StaticRoutes.h"

#include "lumo/Assert.h"

namespace sources::snapshot {

namespace {

template <class Write>
std::string textOf(Write&& write) {
  std::string text;
  Output out([&](std::string_view bytes) { text += bytes; });
  write(out);
  out.finish();
  if (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

} // namespace

std::string sectionText(const state::DeviceState& device, std::string_view name) {
  const std::size_t place = placeOf(sections(), name);
  LUMO_ASSERT(place < sections().size(), "a section of that name");
  const Section& section = sections()[place];
  if (!section.present(device)) return {};
  return textOf([&](Output& out) { section.write(out, device); });
}

std::string routeText(const Routing::Route& route) {
  return textOf([&](Output& out) { writeRoute(out, route); });
}

bool isListed(const Routing::Route& route) { return route.dynamic || route.key.prefix.len() == 0; }

std::string quotedText(std::string_view name) {
  std::string text;
  appendQuoted(text, name);
  return text;
}

} // namespace sources::snapshot
