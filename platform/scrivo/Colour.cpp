#include "scrivo/Colour.h"

namespace scrivo {

namespace {

constexpr struct {
  std::string_view key;
  Colour colour;
} kinds[] = {
    {"prefix", Colour::prefix},          {"route", Colour::prefix},
    {"nexthopAddr", Colour::address},    {"destinationAddr", Colour::address},
    {"vtepAddr", Colour::address},       {"endpoint", Colour::address},
    {"interface", Colour::interface},    {"l3Intf", Colour::interface},
    {"l2Intf", Colour::interface},       {"hardwareProgrammed", Colour::alarm},
    {"kernelProgrammed", Colour::alarm},
};

} // namespace

std::atomic<bool> colourFlag{false};

void useColour(bool use) noexcept { colourFlag.store(use, std::memory_order_relaxed); }

Colour kindOf(std::string_view key) noexcept {
  for (const auto& kind : kinds) {
    if (kind.key == key) return kind.colour;
  }
  return Colour::none;
}

std::string_view startOf(Colour colour) noexcept {
  switch (colour) {
  case Colour::prefix:
    return "\x1b[1m"; // bold, in the colour of the screen's own text
  case Colour::address:
    return "\x1b[35m"; // magenta
  case Colour::interface:
    return "\x1b[36m"; // cyan
  case Colour::alarm:
    return "\x1b[1;31m"; // bold red
  case Colour::none:
    break;
  }
  return {};
}

} // namespace scrivo
