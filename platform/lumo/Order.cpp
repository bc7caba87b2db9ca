#include "lumo/Order.h"

#include <algorithm>
#include <numeric>

namespace Lumo {

namespace {

bool areOrdered(std::size_t count, FunctionRef<bool(std::size_t a, std::size_t b)> isBefore) {
  for (std::size_t place = 1; place < count; ++place) {
    if (isBefore(place, place - 1)) return false;
  }
  return true;
}

} // namespace

std::vector<std::size_t> orderedPlaces(std::size_t count,
                                       FunctionRef<bool(std::size_t a, std::size_t b)> isBefore) {
  std::vector<std::size_t> places(count);
  std::iota(places.begin(), places.end(), std::size_t{0});
  if (areOrdered(count, isBefore)) return places;
  std::stable_sort(places.begin(), places.end(), isBefore);
  return places;
}

} // namespace Lumo
