// What is wrong with a text as a whole, found once it is known that something is: a reader that
// goes by its values sees the first value that it cannot take, while the mistake may be another
// one.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace sources::snapshot {

struct Fault {
  std::size_t offset;
  std::string message;
};

/// Bytes that no JSON text has, or an end ahead of its time; nothing for any other text.
std::optional<Fault> findFault(std::string_view text);

/// The place of a byte, for messages.
std::string lineAndColumn(std::string_view text, std::size_t offset);

} // namespace sources::snapshot
