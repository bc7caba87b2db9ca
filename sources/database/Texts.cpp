#include "sources/database/Texts.h"

namespace sources::database {

std::string listOf(const Names& names, const std::string& prefix) {
  std::string text;
  for (const char* const name : names) text += (text.empty() ? "" : ", ") + prefix + name;
  return text;
}

} // namespace sources::database
