#include "sources/Source.h"

#include "sources/database/Database.h"
#include "sources/database/Lock.h"
#include "sources/kernel/Kernel.h"
#include "sources/snapshot/Snapshot.h"

#include <cerrno>
#include <cstdlib>
#include <unistd.h>

namespace sources {

namespace {

constexpr std::string_view own = "kernel", named = "kernel:";

/// Why a database is not the state of what this process sees; empty when it is.
std::string foreign(const database::Facts& facts) {
  if (!isKernel(facts.source)) return "is not the state of a kernel";
  if (facts.boot != database::bootId()) return "is of another boot";
  if (facts.network != database::networkNamespace()) return "is of another network namespace";
  return {};
}

/// Why the database at the path is not the one to read; empty when it is.
std::string unfit(const std::string& path) {
  if (access(path.c_str(), R_OK) != 0) {
    if (errno == ENOENT) return "there is no state database at " + path;
    return path + " cannot be read: " + Lumo::errorString(errno);
  }
  if (!database::liveWriter(path)) return "no agent keeps " + path;
  try {
    const auto why = foreign(database::factsOf(path));
    return why.empty() ? why : path + " " + why;
  } catch (const SourceError& error) {
    return error.what();
  }
}

} // namespace

Choice defaultSource() {
  const char* const given = std::getenv("ROVA_STATE_DB");
  const std::string path = given ? given : database::defaultPath;
  const auto why = unfit(path);
  if (!why.empty()) return {std::string(own), why};
  return {path, "its agent lives, and it is of this boot and network namespace"};
}

bool isKernel(const std::string& source) { return source == own || source.starts_with(named); }

std::string kernelNamespace(const std::string& source) {
  if (source == own) return {};
  if (source.size() > named.size()) return source.substr(named.size());
  // The user may have meant one, and not this machine's own.
  throw SourceError("\"kernel:\" lacks the name of a network namespace: expected kernel:NAME, or "
                    "kernel for this machine's own");
}

State open(const std::string& source, const Needs& needs, Progress* progress) {
  if (isKernel(source)) return kernel::load(kernelNamespace(source), needs, progress);
  if (source != "-" && database::isDatabase(source)) return database::load(source, needs);
  return {snapshot::load(source, needs, progress), {}};
}

} // namespace sources
