// The routes of a listing: each as the line that it shows, whatever stands around it.
#pragma once

#include "RouteResolver.h"

namespace Rova {

/// Prints routes of a loaded sorter; what they share is worked out once here.
template <class Family>
class RoutePrinter {
 public:
  using Route = typename Family::Route;

  RoutePrinter(Sorter<Family>& sorter, scrivo::Printer& printer)
      : sorter_(sorter),
        printer_(printer),
        resolver_(sorter),
        lines_(printer, {sorter.detail(), sorter.degradeNhgModel()}) {}

  /// Prints one route, or nothing where the listing leaves it out.
  void printRoute(const Route& route);
  /// Prints the selected routes, and writes the output out as it fills.
  void printSelected();

  /// Whether any route is missing from the kernel.
  bool missesKernel() const { return resolver_.missesKernel(); }

 private:
  void printMissingFec(const Route& route);

  Sorter<Family>& sorter_;
  scrivo::Printer& printer_;
  RouteResolver<Family> resolver_;
  RouteLinePrinter lines_;
  FecLooks<FecLook> looks_;
};

extern template class RoutePrinter<Ip4Family>;
extern template class RoutePrinter<Ip6Family>;

} // namespace Rova
