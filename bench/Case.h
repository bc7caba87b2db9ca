// One case: a device of so many routes, and what each step from its table to a listing costs.
#pragma once

#include "Generator.h"
#include "Measure.h"

#include <cstddef>
#include <string>

namespace bench {

/// What to measure on.
struct CaseOptions {
  bool ip6 = false;
  Shape shape = Shape::plain; ///< any other is of IPv4 alone
  std::size_t routes = 1000000;
  std::string prefixFile; ///< takes the prefixes from here, whatever `routes` says
  int repeats = 3;        ///< of selection and renders; the lowest cost counts
};

/// The costs of a case. Times are for all routes together.
struct CaseResult {
  std::size_t routes = 0;   ///< in the table
  std::size_t fecs = 0;     ///< in the table
  std::size_t selected = 0; ///< in the listing
  Cost load;                ///< entering routes and FECs and putting them in order
  Cost selection;           ///< the factory
  Cost text;
  Cost model;
  std::size_t textBytes = 0;
  std::size_t modelBytes = 0;
  std::size_t yields = 0;        ///< of the selection, 1 ms each and more
  std::size_t tableMemory = 0;   ///< bytes resident with the loaded tables
  std::size_t listingMemory = 0; ///< bytes more at the peak of selection and text render
};

/// Measures a case in this process. Raises std::runtime_error on what cannot be read.
CaseResult measure(const CaseOptions& options);

/// Writes one listing of the case's device, "text" or "json", or its "snapshot", on standard
/// output.
void writeOutput(const CaseOptions& options, const std::string& what);

/// Whether the rows of a FEC are built once, as one JSON object: how many FECs have rows after a
/// render, and whether a second one still shows them when all that they are made of is gone. For
/// the shapes whose routes all show by rows; raises std::runtime_error for another.
std::string checkRows(const CaseOptions& options);

/// Counts the routes of a case's device for its summary, and gives the lowest cost of `repeats` as
/// one JSON object on a line.
std::string measureSummary(const CaseOptions& options);

/// The result as one JSON object on a line.
std::string toJson(const CaseOptions& options, const CaseResult& result);

} // namespace bench
