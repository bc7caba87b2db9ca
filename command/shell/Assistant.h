// What a line that is being typed may become: answers for Tab and "?".
#pragma once

#include "command/grammar/Next.h"
#include "command/shell/Program.h"
#include "command/shell/Session.h"

namespace command::shell {

class Assistant {
 public:
  /// Words that the end of a text may become.
  struct Candidates {
    std::string begun; ///< that end
    std::vector<std::string> words;
  };

  Assistant(const Program& program, const Session& session)
      : program_(program), session_(session) {}

  /// What stands ahead of the line.
  std::string prompt() const;
  /// None where the text cannot be understood, or the names of the state cannot be had.
  Candidates candidates(std::string_view text) const;
  /// Lines with all that may follow the text, or with what is wrong with it.
  std::string help(std::string_view text) const;

 private:
  std::vector<std::string> namesIn(const grammar::Choices& choices, const std::string& begun,
                                   const std::string& source) const;

  const Program& program_;
  const Session& session_;
};

/// Whether more text would stand inside of quotes.
bool endsInQuotes(std::string_view text);

} // namespace command::shell
