#include "command/shell/OutputFilter.h"

#include <algorithm>
#include <unistd.h>

namespace command::shell {

namespace {
constexpr unsigned textFormat = 1;

constexpr char escape = '\x1b';

/// The line as it shows. No escapes but those of colours come out of a command.
std::string withoutColours(std::string_view line) {
  std::string text;
  for (auto start = line.find(escape); start != line.npos; start = line.find(escape)) {
    text += line.substr(0, start);
    line.remove_prefix(std::min(line.find('m', start), line.size() - 1) + 1);
  }
  return text.append(line);
}

bool shows(std::string_view line, std::string_view text) {
  if (line.find(escape) == line.npos) return line.find(text) != line.npos;
  return withoutColours(line).find(text) != std::string::npos;
}

} // namespace

OutputFilter::OutputFilter(const std::vector<GivenFilter>& filters)
    : printer_(STDOUT_FILENO, textFormat) {
  for (const auto& filter : filters) stages_.push_back({filter});
}

bool OutputFilter::holdsBack(Stage& stage, std::string_view line) {
  const bool hasText = shows(line, stage.filter.text);
  switch (stage.filter.action) {
  case grammar::FilterAction::include:
    return !hasText;
  case grammar::FilterAction::exclude:
    return hasText;
  case grammar::FilterAction::count:
    ++stage.count;
    return true;
  case grammar::FilterAction::none:
    break;
  }
  return false;
}

void OutputFilter::pass(std::string_view line, std::size_t first) {
  for (auto i = first; i < stages_.size(); ++i) {
    if (holdsBack(stages_[i], line)) return;
  }
  printer_.addFrills("%s\n", scrivo::verbatim(line));
}

void OutputFilter::take(std::string_view output) {
  for (auto end = output.find('\n'); end != output.npos; end = output.find('\n')) {
    line_ += output.substr(0, end);
    pass(line_, 0);
    line_.clear();
    output.remove_prefix(end + 1);
  }
  line_ += output;
  printer_.ioflush();
}

void OutputFilter::end() {
  if (!line_.empty()) pass(line_, 0);
  for (std::size_t i = 0; i < stages_.size(); ++i) {
    const bool counts = stages_[i].filter.action == grammar::FilterAction::count;
    if (counts) pass(std::to_string(stages_[i].count), i + 1);
  }
  printer_.close();
}

} // namespace command::shell
