#include "command/SnapshotLoad.h"

#include "command/grammar/UsageError.h"
#include "sources/database/Database.h"
#include "sources/snapshot/Snapshot.h"

namespace command {

ExitStatus loadSnapshot(const grammar::Parsed& parsed, const Options& options) {
  const auto path = parsed.text("file");
  if (options.into.empty()) {
    throw UsageError("rova: snapshot load writes a state database: --into names its file");
  }
  sources::database::save(sources::snapshot::load(path), path, options.into);
  return success;
}

} // namespace command
