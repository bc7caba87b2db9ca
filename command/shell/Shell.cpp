#include "command/shell/Shell.h"

#include "command/grammar/UsageError.h"
#include "command/shell/Child.h"
#include "command/shell/CommandFile.h"
#include "command/shell/OutputFilter.h"
#include "command/shell/Reported.h"
#include "command/shell/Terminal.h"

#include <memory>
#include <unistd.h>

namespace command::shell {

namespace {

/// Output goes straight to where it is for, unless lines of it are wanted.
int runFiltered(const Work& work, const std::vector<GivenFilter>& filters) {
  if (filters.empty()) return runApart(work);
  OutputFilter filter(filters);
  const int status = runApart(work, [&](std::string_view output) { filter.take(output); });
  filter.end();
  return status;
}

/// The exit status of a line.
int runLine(const Program& program, Session& session, const std::string& line) {
  const Tokens tokens = tokensOf(line);
  if (tokens.openQuote != std::string::npos) {
    throw UsageError("rova: the quotes are not closed" + withCaret(line, tokens.openQuote));
  }
  if (tokens.all.empty()) return success;
  const auto pipeline = pipelineOf(program.grammar(), tokens.all);
  const auto arguments = session.whole(pipeline.arguments);
  const auto work = [&] { return reported([&] { return program.run(arguments); }); };
  const int status = runFiltered(work, pipeline.filters);
  if (status == success) session.keep(arguments);
  return status;
}

void runLines(const Program& program, Session& session, LineSource& lines) {
  while (!session.isOver()) {
    const auto line = lines.next();
    if (!line) return;
    const int status =
        reported([&] { return static_cast<ExitStatus>(runLine(program, session, *line)); });
    if (status != success && !lines.goesOnAfter(*line, status)) return;
  }
}

} // namespace

ExitStatus runShell(const Program& program, std::vector<grammar::GivenOption> options) {
  Session session(program.grammar(), std::move(options));
  const Assistant assistant(program, session);
  std::unique_ptr<LineSource> lines;
  if (isatty(STDIN_FILENO) && isatty(STDOUT_FILENO)) {
    lines = std::make_unique<Terminal>(assistant);
  } else {
    lines = std::make_unique<CommandFile>();
  }
  runLines(program, session, *lines);
  return static_cast<ExitStatus>(lines->status());
}

} // namespace command::shell
