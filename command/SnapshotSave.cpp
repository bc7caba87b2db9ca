#include "command/SnapshotSave.h"

#include "command/ChangedSnapshot.h"
#include "command/OpenState.h"
#include "sources/snapshot/Snapshot.h"

namespace command {

ExitStatus saveSnapshot(Words& words, const Options& options) {
  const std::string path(words.take("the name of a file, or - for standard output"));
  if (!words.atEnd()) words.fail("nothing is expected behind the name of the file");
  sources::snapshot::FileWriter file(path, tellWaiting(path));
  sources::snapshot::save(openState(options).device, file);
  file.commit();
  return success;
}

} // namespace command
