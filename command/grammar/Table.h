// Tables of help.
#pragma once

#include <string>
#include <vector>

namespace command::grammar {

/// A row of a table: what is typed, and what it is for.
struct Row {
  std::string left, right;
};

/// The rows, a line or more each, the right side of all at one column and broken between words.
std::string tableOf(const std::vector<Row>& rows);

} // namespace command::grammar
