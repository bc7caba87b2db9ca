#include "command/shell/OutputFilter.h"

#include <unistd.h>

namespace command::shell {

namespace {
constexpr unsigned textFormat = 1;
} // namespace

OutputFilter::OutputFilter(const std::vector<GivenFilter>& filters)
    : printer_(STDOUT_FILENO, textFormat) {
  for (const auto& filter : filters) stages_.push_back({filter});
}

bool OutputFilter::holdsBack(Stage& stage, std::string_view line) {
  const bool hasText = line.find(stage.filter.text) != line.npos;
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
  printer_.addFrills("%s\n", std::string(line));
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
