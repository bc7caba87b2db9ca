#include "Scan.h"

#include <algorithm>

namespace sources::snapshot {

const char* skipString(const char* at, const char* end) {
  for (; at < end && *at != '"'; ++at) {
    if (static_cast<unsigned char>(*at) < 0x20) return at;
    if (*at == '\\') ++at;
  }
  return std::min(at, end);
}

const char* skipScalar(const char* at, const char* end) {
  if (at < end && isMark(*at)) return at + 1;
  while (at < end && !isBlank(*at) && !isMark(*at)) ++at;
  return at;
}

} // namespace sources::snapshot
