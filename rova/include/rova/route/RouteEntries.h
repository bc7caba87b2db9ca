// The entries of a listing one at a time, for whoever compares them or follows them:
//
//   Rova::RouteEntries<Rova::Ip4Family> entries(*sorter, scrivo::modelFormat);
//   for (const auto& [prefix, route] : sorter->sortedRouteMap()) use(entries.entry(route));
#pragma once

#include "rova/route/Sorter.h"

#include <memory>
#include <string_view>

namespace Rova {

/// What the listing of a loaded sorter shows of its routes, each by itself. The state behind the
/// sorter must not change meanwhile: what routes share is looked at once.
template <class Family>
class ROVA_EXPORT RouteEntries {
 public:
  /// For entries in format 1 (text) or 2 (model).
  RouteEntries(Sorter<Family>& sorter, std::uint32_t format);
  ~RouteEntries();
  RouteEntries(const RouteEntries&) = delete;
  RouteEntries& operator=(const RouteEntries&) = delete;

  /// The bytes that the listing has for a selected route: its lines, or `"PREFIX":{...}`. Empty for
  /// a route that the listing leaves out. Valid until the next call.
  std::string_view entry(const typename Family::Route& route);
  /// The same for the route that stands under a prefix now, selected or not; empty where there is
  /// none or it would not be selected from the whole table.
  std::string_view entryUnder(const typename Family::Prefix& prefix);

 private:
  struct Body;
  std::unique_ptr<Body> body_;
};

extern template class RouteEntries<Ip4Family>;
extern template class RouteEntries<Ip6Family>;

} // namespace Rova
