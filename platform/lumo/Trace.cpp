#include "lumo/Trace.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

namespace Lumo {

namespace {

struct TraceState {
  TraceSink sink = nullptr;
  void* context = nullptr;
  std::vector<TraceHandle*> handles;
  std::map<std::string, std::uint32_t, std::less<>> levels;
};

TraceState& state() {
  static auto* const shared = new TraceState; // handles of other libraries may outlive it otherwise
  return *shared;
}

} // namespace

TraceHandle::TraceHandle(std::string name) : name_(std::move(name)) {
  state().handles.push_back(this);
  if (const auto it = state().levels.find(name_); it != state().levels.end()) levels_ = it->second;
}

TraceHandle::~TraceHandle() { std::erase(state().handles, this); }

void TraceHandle::enabledIs(unsigned level, bool on) {
  if (level >= 32) return;
  const std::uint32_t bit = std::uint32_t{1} << level;
  levels_ = on ? levels_ | bit : levels_ & ~bit;
}

void traceSinkIs(TraceSink sink, void* context) {
  state().sink = sink;
  state().context = context;
}

void traceLevelIs(std::string_view handleName, unsigned level, bool on) {
  if (level >= 32) return;
  auto& levels = state().levels[std::string(handleName)];
  const std::uint32_t bit = std::uint32_t{1} << level;
  levels = on ? levels | bit : levels & ~bit;
  for (auto* handle : state().handles) {
    if (handle->name() == handleName) handle->enabledIs(level, on);
  }
}

void TraceHelper::trace(const char* file, int line, const char* function) {
  const std::string text = text_.str();
  const TraceLine record{handle_.name(), level_, text, file, line, function};
  if (state().sink) return state().sink(state().context, record);
  std::fprintf(stderr, "%s(%u) %s:%d %s: %s\n", handle_.name().c_str(), level_, file, line,
               function, text.c_str());
}

} // namespace Lumo
