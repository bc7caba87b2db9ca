#include "rova/route/RouteEntries.h"

#include "RoutePrinter.h"

namespace Rova {

template <class Family>
struct RouteEntries<Family>::Body {
  Body(Sorter<Family>& taken, std::uint32_t format)
      : sorter(taken), printer(output, format), routes(taken, printer) {}

  Sorter<Family>& sorter;
  std::string output;
  scrivo::Printer printer;
  RoutePrinter<Family> routes;
};

template <class Family>
RouteEntries<Family>::RouteEntries(Sorter<Family>& sorter, std::uint32_t format)
    : body_(std::make_unique<Body>(sorter, format)) {}

template <class Family>
RouteEntries<Family>::~RouteEntries() = default;

template <class Family>
std::string_view RouteEntries<Family>::entry(const typename Family::Route& route) {
  body_->output.clear();
  body_->routes.printRoute(route);
  body_->printer.ioflush();
  // In the model an entry stands on a line of its own, behind the comma of the one ahead of it.
  std::string_view text = body_->output;
  if (body_->printer.format() == scrivo::modelFormat) {
    text.remove_prefix(std::min(text.find('"'), text.size()));
  }
  return text;
}

template <class Family>
std::string_view RouteEntries<Family>::entryUnder(const typename Family::Prefix& prefix) {
  const auto route = selectRoute(body_->sorter, prefix);
  return route ? entry(*route) : std::string_view();
}

template class RouteEntries<Ip4Family>;
template class RouteEntries<Ip6Family>;

} // namespace Rova
