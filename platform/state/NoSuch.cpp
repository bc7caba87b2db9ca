#include "state/NoSuch.h"

#include <algorithm>
#include <utility>

namespace state {

namespace {

constexpr std::size_t mostChanges = 2;
constexpr std::size_t lettersForAChange = 3;

std::string inSmallLetters(std::string_view text) {
  std::string small(text);
  for (char& letter : small) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return small;
}

/// How many letters must be added, dropped, replaced or swapped with their neighbour to make one
/// text of the other: for the first letters of both, row by row, of which three are needed.
std::size_t changes(std::string_view from, std::string_view to) {
  std::vector<std::size_t> twoBack, back, row(to.size() + 1);
  for (std::size_t j = 0; j <= to.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= from.size(); ++i) {
    twoBack = std::exchange(back, row);
    row[0] = i;
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const std::size_t replaced = back[j - 1] + (from[i - 1] != to[j - 1]);
      row[j] = std::min({back[j] + 1, row[j - 1] + 1, replaced});
      const bool isSwap = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
      if (isSwap) row[j] = std::min(row[j], twoBack[j - 2] + 1);
    }
  }
  return row[to.size()];
}

/// The first of the known names that is near; null if none is.
const std::string* nearest(std::string_view name, const std::vector<std::string>& known) {
  const auto small = inSmallLetters(name);
  const std::size_t most = std::min(mostChanges, name.size() / lettersForAChange);
  const std::string* found = nullptr;
  std::size_t fewest = most + 1;
  for (const auto& candidate : known) {
    const std::size_t needed = changes(small, inSmallLetters(candidate));
    if (needed >= fewest) continue;
    fewest = needed;
    found = &candidate;
  }
  return found;
}

} // namespace

std::string noSuch(std::string_view kind, std::string_view name,
                   const std::vector<std::string>& known) {
  std::string message = "there is no " + std::string(kind) + " \"" + std::string(name) + "\"";
  if (const auto* const meant = nearest(name, known)) {
    message += "; did you mean \"" + *meant + "\"?";
  }
  return message;
}

std::string noSuchVrf(const DeviceState& device, std::string_view name) {
  std::vector<std::string> names;
  std::string list;
  for (const auto& vrf : device.vrfs) {
    names.push_back(vrf.name.stringValue().str());
    list += (list.empty() ? "" : ", ") + names.back();
  }
  const auto message = noSuch("VRF", name, names);
  return message + (message.ends_with('?') ? " The" : "; the") + " VRFs are " + list;
}

} // namespace state
