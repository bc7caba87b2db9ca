// Snapshots: a device's whole state in one JSON file, to look at it elsewhere and later.
//
//   const state::DeviceState device = sources::snapshot::load("leaf1.json");
//   sources::snapshot::save(device, "copy.json");
//
// docs/snapshot.md describes the format, docs/snapshot.schema.json defines it.
#pragma once

#include "sources/Progress.h"
#include "sources/SourceError.h"
#include "sources/State.h"
#include "state/DeviceState.h"

#include <string>
#include <string_view>

namespace sources::snapshot {

class FileWriter;

/// The state that a file holds, "-" for the standard input, in tables in memory. Raises
/// `SourceError` for a file that cannot be read or that is not a snapshot from its first to its
/// last byte: there are no half-loaded states. What is not needed is read and refused alike; the
/// configured routes, which take more room than all else, are not kept then. `progress`, if any,
/// hears how much of the text is read.
state::DeviceState load(const std::string& path, const Needs& needs = {},
                        Progress* progress = nullptr);

/// The same from a text; errors call it `name`.
state::DeviceState loadText(std::string_view text, const std::string& name);

/// Writes the state so that a reader finds the whole old file or the whole new one: the text goes
/// to a new file beside `path`, which then takes its place. What is no regular file (a device,
/// a pipe, "-" for the standard output) is written straight. Raises `SourceError` when writing
/// fails, `scrivo::sigintException` when the reader of a pipe goes away, and whatever reading a
/// table raises; the old file then stays as it was.
///
/// Equal states give equal bytes. Bytes of a name or text that are not UTF-8 become lone
/// surrogates.
void save(const state::DeviceState& device, const std::string& path);

/// The same without the last step: `file.commit()` lets the new file take its place.
void save(const state::DeviceState& device, FileWriter& file);

/// The text that `save` writes.
std::string saveText(const state::DeviceState& device);

} // namespace sources::snapshot
