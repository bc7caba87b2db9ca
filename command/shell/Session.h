// What was chosen in the shell for the commands that follow.
#pragma once

#include "command/grammar/Arguments.h"

namespace command::shell {

class Session {
 public:
  /// `options` go ahead of those of each command.
  Session(const grammar::Grammar& grammar, std::vector<grammar::GivenOption> options)
      : grammar_(grammar), options_(std::move(options)) {}

  /// The arguments with the options that were chosen ahead of their own.
  grammar::Arguments withOptions(grammar::Arguments arguments) const;
  /// With the VRF too, where the command may have one and names none. Raises UsageError for words
  /// that cannot be understood.
  grammar::Arguments whole(grammar::Arguments arguments) const;
  /// Keeps what a command that succeeded has chosen.
  void keep(const grammar::Arguments& arguments);

  const std::string& vrf() const { return vrf_; } ///< empty for the default one
  bool isOver() const { return isOver_; }

 private:
  const grammar::Grammar& grammar_;
  std::vector<grammar::GivenOption> options_;
  std::string vrf_;
  bool isOver_ = false;
};

} // namespace command::shell
