#include "command/SnapshotSave.h"

#include "command/ChangedSnapshot.h"
#include "command/OpenState.h"
#include "sources/snapshot/Snapshot.h"

namespace command {

ExitStatus saveSnapshot(const grammar::Parsed& parsed, const Options& options) {
  const auto path = parsed.text("file");
  refuseDatabase(path);
  sources::snapshot::FileWriter file(path, tellWaiting(path));
  sources::snapshot::save(openState(options).device, file);
  file.commit();
  return success;
}

} // namespace command
