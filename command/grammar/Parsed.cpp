#include "command/grammar/Parsed.h"

#include "lumo/Assert.h"

#include <algorithm>

namespace command::grammar {

std::size_t Parsed::indexOf(std::string_view part) const {
  const auto& parts = command_->parts;
  const auto found = std::find_if(parts.begin(), parts.end(),
                                  [&](const Part& candidate) { return candidate.name == part; });
  LUMO_ASSERT(found != parts.end(), "a part is asked for by a name that its command has");
  return static_cast<std::size_t>(found - parts.begin());
}

void Parsed::fail(std::string_view part, const std::string& message, std::size_t offset) const {
  line_.fail(given(part).value().at, message, offset);
}

} // namespace command::grammar
