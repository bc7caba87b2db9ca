#include "command/RouteQuery.h"

namespace command {

template <class Prefix>
RouteQuery<Prefix> routeQuery(const grammar::Parsed& parsed) {
  RouteQuery<Prefix> query;
  query.vrf = parsed.text("vrf", query.vrf);
  if (const auto* const target = parsed.find<grammar::Target<Prefix>>("target")) {
    query.prefix = target->prefix;
    query.typedMask = target->typedMask;
  }
  query.host = parsed.command().has("host") && parsed.has("host");
  query.summary = parsed.command().has("summary") && parsed.has("summary");
  query.longerPrefixes = parsed.has("longer-prefixes");
  query.detail = parsed.has("detail");
  query.protocol = parsed.text("protocol");
  if (parsed.has("interface")) query.interface = parsed.text("interface");
  return query;
}
template RouteQuery<Kesh::Prefix> routeQuery(const grammar::Parsed&);
template RouteQuery<Kesh::Ip6Prefix> routeQuery(const grammar::Parsed&);

} // namespace command
