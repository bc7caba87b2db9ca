#include "command/shell/Paging.h"

#include "command/grammar/Path.h"
#include "command/terminal/Colour.h"
#include "scrivo/Exception.h"

#include <csignal>

namespace command::shell {

void chooseColour(const grammar::Arguments& arguments, bool isSeen) {
  const auto* const choice = arguments.find("--color");
  terminal::chooseColour(choice ? *choice : "auto", isSeen);
}

std::optional<terminal::Paging> pagingOf(const grammar::Grammar& grammar,
                                         const grammar::Arguments& arguments) {
  const auto* const command = grammar::commandOf(grammar, arguments.words);
  const bool isEndless = command && command->endless;
  return isEndless || arguments.find("--no-pager") ? std::nullopt : terminal::pagingHere();
}

int runPaged(const terminal::Paging& paging, const Work& work) {
  setKeySignals(SIG_BLOCK);
  terminal::Pager pager(paging);
  try {
    const int status = runApart(work, [&](std::string_view output) { pager.take(output); });
    pager.end();
    return status;
  } catch (const scrivo::sigintException&) {
    return success;
  }
}

} // namespace command::shell
