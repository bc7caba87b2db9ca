#include "Listing.h"

#include <stdexcept>

namespace bench {

template <class Sorter>
void print(Sorter& sorter, int to, Form form) {
  if (!sorter.printRoutes(static_cast<std::uint32_t>(to), static_cast<std::uint32_t>(form))) {
    throw std::runtime_error("the listing was interrupted");
  }
}

template void print(Rova::RouteSorter&, int, Form);
template void print(Rova::Route6Sorter&, int, Form);

} // namespace bench
