// The rova-agent program: the command line, the place where it works, and errors as one line with
// an exit status.
#include "agent/Agent.h"
#include "agent/LogLine.h"
#include "lumo/ActivityLock.h"
#include "scrivo/Shown.h"
#include "sources/database/Database.h"
#include "sources/kernel/Namespace.h"

#include <cstdio>
#include <filesystem>

namespace {

using namespace agent;

constexpr int failure = 1, usage = 2;

int fail(const char* what, int status) {
  std::fprintf(stderr, "rova-agent: %s\n", scrivo::shown(what).c_str());
  return status;
}

/// The folder of the default file is the agent's own; any other has to be there.
void makeFolder(const std::string& state, const Rights& rights) {
  if (state != sources::database::defaultPath) return;
  std::error_code error; // the opening of the file says what is wrong
  const auto folder = std::filesystem::path(state).parent_path();
  if (std::filesystem::create_directories(folder, error)) rights.giveFolder(folder);
}

void run(const Options& options) {
  ServiceManager manager; // which knows the namespace that it started the agent in
  // Who is there already needs no right to enter.
  const sources::kernel::NamespaceStay stay(
      options.netns.empty() || isIn(options.netns) ? "" : options.netns);
  const Rights rights(options.group);
  makeFolder(options.state, rights);
  Agent agent(options, rights, manager);
  options.once ? agent.runOnce() : agent.run();
}

} // namespace

int main(int count, char** arguments) {
  const auto words =
      std::span<const char* const>(arguments, static_cast<std::size_t>(count)).subspan(1);
  Lumo::ActivityUnlockAnchor::lock().soleActivityIs(true);
  try {
    if (const auto text = printedOnly(words)) return std::fputs(text->c_str(), stdout) < 0;
    run(readOptions(words));
    return 0;
  } catch (const UsageError& error) {
    return fail(error.what(), usage);
  } catch (const std::exception& error) {
    return fail(error.what(), failure);
  }
}
