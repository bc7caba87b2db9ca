// Sorting that is compiled once for all that is sorted: it moves places, and calls back to compare.
#pragma once

#include "lumo/FunctionRef.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace Lumo {

/// The places from 0 to `count` - 1 in the order of what stands there, the first of equals first;
/// `isBefore(a, b)` tells whether what stands at `a` goes before what stands at `b`. It is called
/// once a place when all are in order as they stand.
std::vector<std::size_t> orderedPlaces(std::size_t count,
                                       FunctionRef<bool(std::size_t a, std::size_t b)> isBefore);

/// The elements in order; equals keep theirs.
template <class Element, class IsBefore>
std::vector<Element> inOrder(std::vector<Element> elements, const IsBefore& isBefore) {
  const auto places = orderedPlaces(elements.size(), [&](std::size_t a, std::size_t b) {
    return isBefore(elements[a], elements[b]);
  });
  std::vector<Element> ordered;
  ordered.reserve(elements.size());
  for (const std::size_t place : places) ordered.push_back(std::move(elements[place]));
  return ordered;
}

} // namespace Lumo
