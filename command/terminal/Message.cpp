#include "command/terminal/Message.h"

#include "command/terminal/Colour.h"
#include "scrivo/Colour.h"

#include <cstdio>

namespace command::terminal {

namespace {
constexpr std::string_view sender = "rova:";
} // namespace

// Without an allocation: the message may be that there is no memory.
void tell(std::string_view message) {
  const bool isColoured = message.starts_with(sender) && coloursMessages();
  if (isColoured) {
    message.remove_prefix(sender.size());
    std::fprintf(stderr, "%s%s%s", scrivo::startOf(scrivo::Colour::alarm).data(), sender.data(),
                 scrivo::colourEnd.data());
  }
  std::fprintf(stderr, "%.*s\n", static_cast<int>(message.size()), message.data());
}

} // namespace command::terminal
