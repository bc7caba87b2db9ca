// The program that a shell is of.
#pragma once

#include "command/grammar/Arguments.h"
#include "command/grammar/Line.h"

#include <string>
#include <string_view>
#include <vector>

namespace command::shell {

class Program {
 public:
  virtual ~Program() = default;

  /// All that a line may be.
  virtual const grammar::Grammar& grammar() const = 0;
  /// Runs a command to its end; raises what it fails with. May end the process.
  virtual ExitStatus run(const grammar::Arguments& arguments) const = 0;
  /// The source of the state that a command with these arguments would show.
  virtual std::string source(const grammar::Arguments& arguments) const = 0;
  /// What a word that begins so may become by the choices. May raise anything, and end the process
  /// when it takes long.
  virtual std::vector<std::string> candidates(const grammar::Choices& choices,
                                              std::string_view begun,
                                              const std::string& source) const = 0;
};

} // namespace command::shell
