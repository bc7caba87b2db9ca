#include "sources/Source.h"

#include "sources/database/Database.h"
#include "sources/kernel/Kernel.h"
#include "sources/snapshot/Snapshot.h"

namespace sources {

namespace {

constexpr std::string_view own = "kernel", named = "kernel:";

/// The namespace that "kernel:NAME" names. Without one the user may have meant one, and not this
/// machine's own.
std::string namespaceOf(const std::string& source) {
  if (source.size() > named.size()) return source.substr(named.size());
  throw SourceError("\"kernel:\" lacks the name of a network namespace: expected kernel:NAME, or "
                    "kernel for this machine's own");
}

} // namespace

bool isKernel(const std::string& source) { return source == own || source.starts_with(named); }

State open(const std::string& source, const Needs& needs) {
  if (source == own) return kernel::load("", needs);
  if (source.starts_with(named)) return kernel::load(namespaceOf(source), needs);
  if (source != "-" && database::isDatabase(source)) return database::load(source, needs);
  return {snapshot::load(source), {}}; // it is read as a whole
}

} // namespace sources
