#include "Field.h"

namespace sources::snapshot {

std::string oneOf(std::span<const std::string_view> names) {
  std::string text = "one of ";
  for (const std::string_view& name : names) {
    if (&name != &names.front()) text += ", ";
    appendQuoted(text, name);
  }
  return text;
}

} // namespace sources::snapshot
