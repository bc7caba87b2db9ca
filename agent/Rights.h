// Who may read what the agent writes: everybody, or a group alone. Nobody but the agent writes it.
#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

namespace agent {

class Rights {
 public:
  /// For the members of the group; for everybody when it is empty. From now on the process makes
  /// files and folders of those rights, whatever it was started with. Raises `SourceError` for a
  /// group that there is not.
  explicit Rights(const std::string& group);

  /// Gives them to a file that may be there already, and to a folder. Raises `SourceError`.
  void giveFile(const std::string& path) const;
  void giveFolder(const std::string& path) const;
  /// Gives them to a database with all files that stand beside it.
  void giveDatabase(const std::string& path) const;

 private:
  void give(const std::string& path, mode_t mode) const;

  std::optional<gid_t> group_;
  std::string name_;
};

} // namespace agent
