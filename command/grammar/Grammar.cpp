#include "command/grammar/Grammar.h"

#include <algorithm>

namespace command::grammar {

const Option* findOption(const Grammar& grammar, std::string_view name) {
  for (const Option& option : grammar.options) {
    if (name == option.name || (name == option.shortName && !name.empty())) return &option;
  }
  return nullptr;
}

bool takesOption(const Command& command, const Option& option) {
  if (option.name == command.refused) return false;
  if (option.scope != Scope::named) return option.scope == Scope::all;
  return std::find(command.options.begin(), command.options.end(), option.name) !=
         command.options.end();
}

} // namespace command::grammar
