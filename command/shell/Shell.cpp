#include "command/shell/Shell.h"

#include "command/grammar/UsageError.h"
#include "command/shell/Child.h"
#include "command/shell/CommandFile.h"
#include "command/shell/OutputFilter.h"
#include "command/shell/Paging.h"
#include "command/shell/Reported.h"
#include "command/shell/Terminal.h"

#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace command::shell {

namespace {

/// A command may not read the lines that are for others: without a terminal its standard input
/// refuses to be read.
void closeInput() {
  if (isatty(STDIN_FILENO)) return;
  const int none = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(none, STDIN_FILENO);
  close(none);
}

ExitStatus runFiltered(const Work& work, const std::vector<GivenFilter>& filters) {
  OutputFilter filter(filters);
  const int status = runApart(work, [&](std::string_view output) { filter.take(output); });
  filter.end();
  return static_cast<ExitStatus>(status);
}

/// Output goes straight to where it is for, unless lines of it are wanted, or a screen of it at a
/// time.
int runPipeline(const grammar::Grammar& grammar, const Pipeline& pipeline, const Work& work,
                bool mayPage) {
  const Work filtered = [&] { return runFiltered(work, pipeline.filters); };
  const auto paging = mayPage ? pagingOf(grammar, pipeline.arguments) : std::nullopt;
  if (pipeline.filters.empty()) return paging ? runPaged(*paging, work) : runApart(work);
  return paging ? runPaged(*paging, filtered) : filtered();
}

/// The exit status of a line.
int runLine(const Program& program, Session& session, const std::string& line, bool mayPage) {
  const Tokens tokens = tokensOf(line);
  if (tokens.openQuote != std::string::npos) {
    throw UsageError("rova: the quotes are not closed" + withCaret(line, tokens.openQuote));
  }
  if (tokens.all.empty()) return success;
  auto pipeline = pipelineOf(program.grammar(), tokens.all);
  const auto& arguments = pipeline.arguments = session.whole(pipeline.arguments);
  const bool isSeen = isatty(STDOUT_FILENO) && pipeline.filters.empty();
  const auto work = [&] {
    closeInput();
    chooseColour(arguments, isSeen);
    return reported([&] { return program.run(arguments); });
  };
  const int status = runPipeline(program.grammar(), pipeline, work, mayPage && pipeline.mayPage);
  if (status == success) session.keep(arguments);
  return status;
}

void runLines(const Program& program, Session& session, LineSource& lines, bool mayPage) {
  while (!session.isOver()) {
    const auto line = lines.next();
    if (!line) return;
    const int status = reported(
        [&] { return static_cast<ExitStatus>(runLine(program, session, *line, mayPage)); });
    if (status != success && !lines.goesOnAfter(*line, status)) return;
  }
}

} // namespace

ExitStatus runShell(const Program& program, std::vector<grammar::GivenOption> options) {
  Session session(program.grammar(), std::move(options));
  const Assistant assistant(program, session);
  std::unique_ptr<LineSource> lines;
  // A file of commands is no reason to sit in front of the screen.
  const bool isTyped = isatty(STDIN_FILENO) && isatty(STDOUT_FILENO);
  if (isTyped) {
    lines = std::make_unique<Terminal>(assistant);
  } else {
    lines = std::make_unique<CommandFile>();
  }
  runLines(program, session, *lines, isTyped);
  return static_cast<ExitStatus>(lines->status());
}

} // namespace command::shell
