// Rows by what differs, for tables that are small enough to be read as a whole.
#pragma once

namespace sources::database {

/// Enters what differs and removes what is too much:
/// `old` and `now` are maps of the keys to what stands, or is to stand, behind them.
template <class Map, class Enter, class Remove>
void replaceRows(const Map& old, const Map& now, Enter&& enter, Remove&& remove) {
  for (const auto& [key, value] : old) {
    if (!now.contains(key)) remove(key);
  }
  for (const auto& [key, value] : now) {
    const auto before = old.find(key);
    if (before == old.end() || before->second != value) enter(key, value);
  }
}

} // namespace sources::database
