#include "command/filter/RouteFilter.h"

#include <algorithm>

namespace command::filter {

namespace {

/// The expression over the routes of one listing. What it asks of vias is answered once for all
/// routes that share them, a bit for each comparison.
template <class Family>
class ExpressionOnRoutes {
 public:
  using Route = typename Family::Route;

  ExpressionOnRoutes(Rova::Sorter<Family>& sorter, Expression expression)
      : expression_(std::move(expression)),
        shown_(sorter, [this](const Rova::ShownVias& vias) { return answersOf(vias); }) {
    for (const Comparison& comparison : expression_.comparisons()) {
      areOfVias_.push_back(isOfVias(*comparison.field));
    }
    const auto count = std::count(areOfVias_.begin(), areOfVias_.end(), true);
    asksVias_ = count != 0;
    asksHead_ = static_cast<std::size_t>(count) != areOfVias_.size();
  }

  /// The vias are asked first, whatever else decides: what they show can hang on the first route
  /// that shows them.
  bool holds(const Route& route) {
    const auto answers = asksVias_ ? shown_.answer(route) : 0;
    const auto head = asksHead_ ? shown_.head(route) : Rova::RouteHead();
    return expression_.holds([&](std::size_t at) {
      return areOfVias_[at] ? (answers >> at & 1) != 0 : expression_.comparisons()[at].holds(head);
    });
  }

  void expect(const Route& route) const {
    if (asksVias_) shown_.expect(route);
  }

 private:
  std::uint64_t answersOf(const Rova::ShownVias& vias) const {
    std::uint64_t answers = 0;
    for (std::size_t at = 0; at < areOfVias_.size(); ++at) {
      const bool holds = areOfVias_[at] && expression_.comparisons()[at].holds(vias);
      answers |= std::uint64_t{holds} << at;
    }
    return answers;
  }

  const Expression expression_;
  std::vector<bool> areOfVias_;
  bool asksVias_, asksHead_;
  Rova::ShownRoutes<Family> shown_;
};

/// The choice over the routes of one listing.
template <class Family>
class ChosenRoutes : public Rova::RouteFilter<typename Family::Route> {
 public:
  using Route = typename Family::Route;

  ChosenRoutes(Rova::Sorter<Family>& sorter, RouteChoice choice)
      : protocols_(std::move(choice.protocols)) {
    if (choice.where) where_.emplace(sorter, *std::move(choice.where));
  }

  /// A route that is not there, which the gateway of last resort can be, is none.
  bool takes(const Route& route) override {
    return !Rova::isInvalid(route.routeType) && isOfProtocols(route) &&
           (!where_ || where_->holds(route));
  }
  void expect(const Route& route) override {
    if (where_) where_->expect(route);
  }

 private:
  bool isOfProtocols(const Route& route) const {
    const auto isOf = [&](const auto& code) { return Rova::protocolMatch(route, code); };
    return protocols_.empty() || std::any_of(protocols_.begin(), protocols_.end(), isOf);
  }

  const std::vector<std::string> protocols_;
  std::optional<ExpressionOnRoutes<Family>> where_;
};

} // namespace

template <class Family>
void filterRoutes(Rova::Sorter<Family>& sorter, RouteChoice choice) {
  sorter.routeFilterIs(std::make_shared<ChosenRoutes<Family>>(sorter, std::move(choice)));
}

template void filterRoutes(Rova::Sorter<Rova::Ip4Family>&, RouteChoice);
template void filterRoutes(Rova::Sorter<Rova::Ip6Family>&, RouteChoice);

} // namespace command::filter
