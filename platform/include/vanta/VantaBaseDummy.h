// The table that stands in for one that has been detached: it reads as empty.
#pragma once

#include "vanta/VantaBase.h"

#include <memory>

namespace Vanta {

/// What a detached view reads: a table without records, which says what it was when it is asked.
template <class Key, class Value>
class VantaBaseDummy final : public VantaBase<Key, Value> {
 public:
  using Base = VantaBase<Key, Value>;

  VantaBaseDummy(const Tembra::Debuggable& debug, std::string name, const Value& defaultValue,
                 std::unique_ptr<Base> replaced)
      : debug_(debug),
        rootPath_(debug.name(), std::move(name)),
        default_(defaultValue),
        replaced_(std::move(replaced)) {}

  int initialize() override { return trace("initialize"), 1; }
  void detach() override { trace("detach"); }
  int validate() override { return trace("validate"), 1; }
  int validateFiles() override { return trace("validateFiles"), 1; }
  void cleanup() override {
    trace("cleanup");
    replaced_->cleanup();
  }
  const Value* lookup(const Key&, bool& found, IterHint) const override {
    trace("lookup");
    found = false;
    return &default_;
  }
  bool first(Value* value, IterHint&) const override {
    trace("first");
    if (value) *value = default_;
    return false;
  }
  bool next(const Key&, Value* value, IterHint& hint) const override {
    trace("next");
    return first(value, hint);
  }
  std::size_t members() const override { return trace("members"), 0; }
  std::size_t minSize() const override { return trace("minSize"), 0; }
  std::size_t maxSize() const override { return trace("maxSize"), 0; }
  std::size_t capacity() const override { return trace("capacity"), 0; }
  int type() const override { return trace("type"), 2; }
  ReaderCounters readerCounters() const override {
    return trace("readerCounters"), ReaderCounters();
  }
  RootPath rootPath() const override { return rootPath_; }
  int mountStatus() const override { return trace("mountStatus"), 0; }

 private:
  void trace(const char* operation) const {
    if (!debug_.enabled(5)) return;
    debug_.write(std::string("VantaBaseDummy::") + operation + "() " + rootPath_.name());
  }

  const Tembra::Debuggable& debug_;
  RootPath rootPath_;
  Value default_;
  std::unique_ptr<Base> replaced_;
};

} // namespace Vanta
