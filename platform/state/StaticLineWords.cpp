#include "state/StaticLineWords.h"

#include "kesh/Address.h"

#include <charconv>
#include <cstdint>

namespace Routing {

namespace {

constexpr std::string_view leakWords = " leak vrf ";

bool isNumber(std::string_view word) {
  std::uint32_t number = 0;
  const auto* const last = word.data() + word.size();
  const auto [end, error] = std::from_chars(word.data(), last, number);
  return error == std::errc() && end == last;
}

} // namespace

bool beginsAttributes(std::string_view word) {
  for (const std::string_view keyword : {"track", "vtep", "tag", "name", "leak"}) {
    if (word == keyword) return true;
  }
  return word.empty() || isNumber(word);
}

bool readsAsInterface(std::string_view word) {
  return word != dropWord && word != nexthopGroupWord && !beginsAttributes(word) &&
         !Kesh::IpGenAddr::parse(word);
}

std::size_t findLeak(std::string_view line) {
  const auto leak = line.rfind(leakWords);
  if (leak == line.npos) return leak;
  const auto name = leakedTo(line.substr(leak));
  return name.empty() || name.find(' ') != name.npos ? line.npos : leak;
}

std::string_view leakedTo(std::string_view leak) { return leak.substr(leakWords.size()); }

} // namespace Routing
