// An expression over the fields of a route, as it was understood:
//
//   auto expression = filter::readExpression("vias >= 2 and not protocol = bgp");
//   filter::filterRoutes(*sorter, {.where = std::move(expression)}); //
//   command/filter/RouteFilter.h
#pragma once

#include "command/filter/Comparison.h"

#include <string_view>

namespace command::filter {

class Expression {
 public:
  /// As many as an answer about vias has bits for; it also bounds how deep evaluation goes.
  static constexpr std::size_t mostComparisons = 64;

  const std::vector<Comparison>& comparisons() const { return comparisons_; }

  /// Whether it holds where `answer(i)` says so of the comparison at place `i`.
  template <class Answer>
  bool holds(const Answer& answer) const {
    return holds(answer, nodes_.size() - 1);
  }

 private:
  friend class Parser;

  enum class Join : unsigned char { comparison, negation, both, either };

  /// Of a comparison `first` is its place, else it and `second` are those of the nodes below.
  struct Node {
    Join join;
    std::size_t first;
    std::size_t second = 0;
  };

  template <class Answer>
  bool holds(const Answer& answer, std::size_t at) const {
    const Node& node = nodes_[at];
    switch (node.join) {
    case Join::comparison:
      return answer(node.first);
    case Join::negation:
      return !holds(answer, node.first);
    case Join::both:
      return holds(answer, node.first) && holds(answer, node.second);
    case Join::either:
      break;
    }
    return holds(answer, node.first) || holds(answer, node.second);
  }

  std::vector<Comparison> comparisons_;
  std::vector<Node> nodes_; ///< each behind those below it, the whole last
};

/// Raises ExpressionError for a text that is none.
Expression readExpression(std::string_view text);

} // namespace command::filter
