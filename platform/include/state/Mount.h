// Mounting shared tables by their path in the state database.
//
//   LumoVanta::Mount mount(entityManager);
//   mount.handleInitialized();
//   mount.doMount(path, "Gaugex::CounterTable", LumoVanta::MountInfo::reader());
//   const auto table = Lumo::dynamicPtrCast<Gaugex::CounterTable>(mount.getEntity(path));
#pragma once

#include "state/EntityManager.h"

#include <array>
#include <string>
#include <vector>

namespace LumoVanta {

/// How a table is mounted, in the words of the service that serves it.
struct MountInfo {
  /// For reading alone.
  static constexpr int readerMode = 2;

  int mode = 0;
  std::array<bool, 7> flags{};
  std::vector<std::string> collectionInfos;

  /// For a process that only reads.
  static MountInfo reader() {
    return {readerMode, {false, false, true, true, true, true, false}, {}};
  }
};

/// A client of the service. The tables stand in this process or are attached by their source, so
/// mounting is remembering which paths were asked for.
class Mount {
 public:
  explicit Mount(Lumo::Ptr<Merrow::EntityManager> manager) : manager_(std::move(manager)) {}
  /// Ready to mount, if there is a manager.
  void handleInitialized() { ready_ = static_cast<bool>(manager_); }
  /// A path at which nothing stands mounts nothing.
  void doMount(const Lumo::String& path, const Lumo::String& typeName, const MountInfo& info) {
    mounted_.insertOrAssign(path, {typeName, info.mode});
  }
  /// What was mounted at the path; null for nothing.
  Lumo::Ptr<Lumo::PtrInterface> getEntity(const Lumo::String& path) const {
    if (!ready_ || !mounted_.find(path)) return {};
    return manager_->getEntity(path);
  }

 private:
  struct Mounted {
    Lumo::String typeName;
    int mode = 0;
  };
  Lumo::Ptr<Merrow::EntityManager> manager_;
  bool ready_ = false;
  Lumo::HashMap2018<Lumo::String, Mounted> mounted_;
};

} // namespace LumoVanta
