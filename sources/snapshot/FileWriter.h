// Files that are replaced at once.
//
//   FileWriter file("leaf1.json"); // from here on no other process changes it
//   const FileText old = readFile("leaf1.json");
//   file.write(changed(old.text()));
//   file.commit(); // now it is another file, its owner's as before
#pragma once

#include "sources/snapshot/Descriptor.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace sources::snapshot {

/// Writes a file that takes the place of the one at `path` in one step, when `commit` is called.
/// A writer that goes without it leaves the old file. From its beginning to its end no other writer
/// gets at the file, so that who reads it meanwhile may write what follows from it. The new file
/// has the owner, group, mode and extended attributes of the old one and is at no time open to more
/// readers; a link stays a link. What is at `path` and is no regular file is written straight, as
/// is the standard output for "-".
///
/// Raises `SourceError` with the path and the system's text, and `scrivo::sigintException` when the
/// reader of a pipe has gone away.
class FileWriter {
 public:
  /// Waits for another writer of the file, after it has called `waiting` if there is one.
  explicit FileWriter(const std::string& path, const std::function<void()>& waiting = {});
  ~FileWriter();
  FileWriter(const FileWriter&) = delete;
  FileWriter& operator=(const FileWriter&) = delete;

  void write(std::string_view bytes);
  /// Ends the writing: all bytes are where they last. The file has not changed yet.
  void finish();
  /// Finishes, unless that was done, and lets the new file take its place.
  void commit();

 private:
  class Beside;
  void open();
  void openBeside();
  [[noreturn]] void fail() const;

  std::string path_;
  Descriptor old_; // locked; none when there is no file or it is written straight
  Descriptor file_;
  std::unique_ptr<Beside> beside_; // none when the file is written straight
};

} // namespace sources::snapshot
