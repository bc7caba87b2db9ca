// Colour in text: what kind of value stands out how, and whether any does.
#pragma once

#include "lumo/Export.h"

#include <atomic>
#include <cstdint>
#include <string_view>

namespace scrivo {

/// The kinds of value that have a colour. They are told apart on dark and on light screens, and
/// none of them is yellow or blue, which one of the two hides.
enum class Colour : std::uint8_t {
  none,
  prefix,    ///< what a line is about
  address,   ///< where it leads
  interface, ///< through what
  alarm,     ///< what is not as it should be
};

/// The flag itself, for the inline check alone. One a process: what opens printers knows a
/// descriptor and a format, and only the program knows whether a person looks at what it prints,
/// also through a pipe to a pager.
extern LUMO_EXPORT std::atomic<bool> colourFlag;

/// Whether text has colours; not until `useColour(true)`. The model never has any.
inline bool usesColour() noexcept { return colourFlag.load(std::memory_order_relaxed); }

/// Gives the text of attributes colours that are made from here on, or none.
LUMO_EXPORT void useColour(bool use) noexcept;

/// The colour of the values of that name in the model.
LUMO_EXPORT Colour kindOf(std::string_view key) noexcept;

/// The same, or none while text has no colours.
inline Colour colourOf(std::string_view key) noexcept {
  return usesColour() ? kindOf(key) : Colour::none;
}

/// What a terminal is sent ahead of a text in that colour (ECMA-48, SGR).
LUMO_EXPORT std::string_view startOf(Colour colour) noexcept;
/// And behind it, whatever the colour.
inline constexpr std::string_view colourEnd = "\x1b[0m";

} // namespace scrivo
