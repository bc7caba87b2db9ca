#include "Where.h"

#include "Descriptor.h"
#include "Listing.h"
#include "command/filter/RouteFilter.h"
#include "lumo/ActivityLock.h"

#include <iomanip>
#include <sstream>

namespace bench {

namespace {

using command::filter::filterRoutes;
using command::filter::readExpression;

/// Each holds for every route, so that all that a listing prints is what it prints without.
constexpr const char* expressions[] = {
    "length >= 0",
    "prefix in {0.0.0.0/0, ::/0} and protocol in {bgp, static, connected}",
    "vias >= 0",
    "nexthop in {0.0.0.0/0, ::/0} or connected",
    "vias >= 1 and interface ~ \"Ethernet*\" and not metric > 100000",
};

template <class Family>
class Listings {
 public:
  explicit Listings(std::size_t routes) : routes_(routes) {
    fillDevice(device_, makePrefixes<typename Family::Prefix>(routes));
  }

  /// One turn: without an expression, and with each.
  void print() {
    plain_.lower(costWith({}));
    for (std::size_t at = 0; at < std::size(expressions); ++at) {
      costs_[at].lower(costWith({.where = readExpression(expressions[at])}));
    }
  }

  std::string figures() const {
    std::ostringstream out;
    out << "{\"routes\":" << routes_ << ",\"text\":" << plain_.cpu << ",\"where\":{";
    for (std::size_t at = 0; at < std::size(expressions); ++at) {
      const auto added = (costs_[at].cpu - plain_.cpu) * 1e9 / static_cast<double>(routes_);
      out << (at ? "," : "") << std::quoted(expressions[at]) << ':' << added;
    }
    out << "}}";
    return out.str();
  }

 private:
  Cost costWith(command::filter::RouteChoice choice) const {
    const auto& state = device_.state;
    const auto sorter = Rova::openSorter<Family>(state, state.vrfs.front(), {});
    if (choice.where) filterRoutes(*sorter, std::move(choice));
    return costOf([&] { bench::print(*sorter, null_.fd(), Form::text); });
  }

  const std::size_t routes_;
  state::DeviceBuilder device_;
  const Descriptor null_ = Descriptor::null();
  Cost plain_, costs_[std::size(expressions)];
};

template <class Family>
std::string measure(const CaseOptions& options) {
  Listings<Family> listings(options.routes);
  for (int i = 0; i < options.repeats; ++i) listings.print();
  return listings.figures();
}

} // namespace

std::string measureWhere(const CaseOptions& options) {
  Lumo::ActivityUnlockAnchor::lock().soleActivityIs(true); // no sleeps, of which none is measured
  const Lumo::ActivityLockHold hold;
  return options.ip6 ? measure<Rova::Ip6Family>(options) : measure<Rova::Ip4Family>(options);
}

} // namespace bench
