// A line of the shell: a command, and what becomes of its output.
#pragma once

#include "command/grammar/Next.h"
#include "command/shell/Tokens.h"

namespace command::shell {

struct GivenFilter {
  grammar::FilterAction action;
  std::string text;
};

struct Pipeline {
  grammar::Arguments arguments; ///< a "| json" is an option among them
  std::vector<GivenFilter> filters;
  bool mayPage = true; ///< without a "| no-more"
};

/// The arguments of the command alone, ahead of any "|". Raises UsageError for options that are
/// none.
grammar::Arguments commandIn(const grammar::Grammar& grammar, const std::vector<Token>& tokens);

/// Raises UsageError for what cannot be understood behind a "|", and for options that are none.
Pipeline pipelineOf(const grammar::Grammar& grammar, const std::vector<Token>& tokens);

/// What may follow the tokens. Raises UsageError where they cannot be understood themselves.
grammar::Next nextIn(const grammar::Grammar& grammar, const std::vector<Token>& tokens);

} // namespace command::shell
