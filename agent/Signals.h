// Signals as something to wait for beside others.
#pragma once

#include "sources/snapshot/Descriptor.h"

namespace agent {

class Signals {
 public:
  /// From now on SIGTERM, SIGINT and SIGHUP wait here.
  Signals();
  /// Can be read when there is one.
  int descriptor() const { return file_.number(); }
  /// The next one, 0 for none.
  int next();

 private:
  sources::snapshot::Descriptor file_;
};

} // namespace agent
