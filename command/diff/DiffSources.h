// The two states that `diff` compares.
#pragma once

#include "sources/State.h"

#include <string>
#include <vector>

namespace command {

/// A state by its name in the command.
struct NamedState {
  std::string name;
  sources::State state;

  /// What a message says of it.
  std::string said(const std::string& message) const;
};

struct DiffSources {
  NamedState from, to;

  /// See `sources::Moment`.
  void hold() const { from.state.hold(), to.state.hold(); }
  void release() const { from.state.release(), to.state.release(); }
};

/// A VRF of both states; null where there is none of its name.
struct VrfPair {
  std::string name;
  const state::VrfState* from;
  const state::VrfState* to;
};

/// Opens both; tells on standard error what is to be known of them, each line with the name of its
/// state ahead. Raises SourceError.
DiffSources openSources(const std::string& from, const std::string& to,
                        const sources::Needs& needs);

/// The VRF of that name in both, or every VRF of either for "all": those of the first state in its
/// order, then those that the second one has alone. Raises SourceError, which lists the VRFs, when
/// neither has it.
std::vector<VrfPair> chosenVrfs(const DiffSources& sources, const std::string& name);

/// Raises SourceError when neither state names the interface.
void requireInterface(const DiffSources& sources, const std::string& name);

} // namespace command
