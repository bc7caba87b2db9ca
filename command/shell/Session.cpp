#include "command/shell/Session.h"

#include "command/grammar/Reader.h"

#include <algorithm>

namespace command::shell {

namespace {

constexpr std::string_view defaultVrf = "default";

bool mayHaveVrf(const grammar::Command& command) {
  const auto isVrf = [](const grammar::Part& part) { return part.name == "vrf" && !part.required; };
  return std::any_of(command.parts.begin(), command.parts.end(), isVrf);
}

} // namespace

grammar::Arguments Session::withOptions(grammar::Arguments arguments) const {
  arguments.options.insert(arguments.options.begin(), options_.begin(), options_.end());
  return arguments;
}

grammar::Arguments Session::whole(grammar::Arguments arguments) const {
  arguments = withOptions(std::move(arguments));
  if (vrf_.empty()) return arguments;
  const grammar::Reader reader(grammar_, arguments.words);
  if (!reader.mayEnd() || !mayHaveVrf(*reader.command()) || reader.whole().has("vrf")) {
    return arguments;
  }
  arguments.words.insert(arguments.words.end(), {"vrf", vrf_});
  return arguments;
}

void Session::keep(const grammar::Arguments& arguments) {
  const grammar::Reader reader(grammar_, arguments.words);
  if (arguments.find("--help") || !reader.mayEnd()) return;
  const auto& parsed = reader.whole();
  const auto path = parsed.command().path;
  if (path == "exit" || path == "quit") isOver_ = true;
  if (path == "vrf") vrf_ = parsed.text("name") == defaultVrf ? "" : parsed.text("name");
  if (path != "state") return;
  const auto* const option = grammar::findOption(grammar_, "--state");
  std::erase_if(options_, [&](const auto& given) { return given.option == option; });
  options_.push_back({option, parsed.text("source")});
  vrf_.clear(); // it was one of the other device
}

} // namespace command::shell
