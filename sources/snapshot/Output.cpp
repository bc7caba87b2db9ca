#include "Output.h"

#include "Escapes.h"

#include <exception>

namespace sources::snapshot {

namespace {

constexpr std::size_t pieceBytes = 64 * 1024;

} // namespace

Output::Scope::Scope(Output& out, std::string_view brackets, Layout layout)
    : out_(out), closing_(brackets[1]), exceptions_(std::uncaught_exceptions()) {
  out_.open(brackets[0], layout);
}

// A text that an exception cut short is thrown away: nothing more is written then.
Output::Scope::~Scope() noexcept(false) {
  if (std::uncaught_exceptions() == exceptions_) out_.close(closing_);
}

void Output::open(char bracket, Layout layout) {
  member();
  buffer_ += bracket;
  const bool inRow = !levels_.empty() && levels_.back().layout == Layout::row;
  levels_.push_back({inRow ? Layout::row : layout, true});
}

void Output::close(char bracket) {
  const Level level = levels_.back();
  levels_.pop_back();
  if (level.layout == Layout::lines && !level.empty) lineBreak();
  buffer_ += bracket;
}

void Output::member() {
  if (afterKey_ || levels_.empty()) {
    afterKey_ = false;
    return;
  }
  Level& level = levels_.back();
  if (!level.empty) buffer_ += ',';
  if (level.layout == Layout::lines) {
    lineBreak();
  } else if (!level.empty) {
    buffer_ += ' ';
  }
  level.empty = false;
}

void Output::lineBreak() {
  if (buffer_.size() > pieceBytes) {
    sink_(buffer_);
    buffer_.clear();
  }
  buffer_ += '\n';
  buffer_.append(levels_.size(), ' ');
}

void Output::key(std::string_view name) {
  member();
  appendQuoted(buffer_, name);
  buffer_ += ": ";
  afterKey_ = true;
}

void Output::text(std::string_view value) {
  member();
  appendQuoted(buffer_, value);
}

void Output::plain(std::string_view value) {
  member();
  buffer_ += value;
}

void Output::finish() {
  buffer_ += '\n';
  sink_(buffer_);
  buffer_.clear();
}

} // namespace sources::snapshot
