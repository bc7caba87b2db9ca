// The seam between a read view and what stands behind it: every operation of a table, with the
// refusals that each read view shares.
#pragma once

#include "vanta/Debuggable.h"
#include "vanta/Exception.h"
#include "vanta/RootPath.h"

#include <cstddef>
#include <cstdint>

#define VANTA_EXPORT __attribute__((visibility("default")))

namespace Vanta {

/// What an iteration keeps between steps to find its place without a search. 0 knows nothing.
using IterHint = std::uint64_t;

/// What a writer counts: nothing that a read view offers.
struct WriterCounters {};

/// Reads served by a table, for those implementations that count.
struct ReaderCounters {
  std::uint64_t lookups = 0;
  std::uint64_t steps = 0;
};

/// What marks a version of a table: nothing that a read view offers.
struct VersionAnchor {};

/// The key of a record: its field `key`.
template <class Value>
const auto& keyOf(const Value& value) {
  return value.key;
}

/// A table of records by key. An implementation for reading overrides the operations without a
/// default; whatever would write is refused with `Tembra::NoPermissionException`, and what no read
/// view offers with `Tembra::UnimplementedException`.
///
/// `lookup`, `first` and `next` give whole records or raise `Tembra::CorruptionDetectedException`.
template <class Key, class Value>
class VANTA_EXPORT VantaBase {
 public:
  virtual ~VantaBase() = default;

  /// Makes the table ready to be read, and lets go of it:
  virtual int initialize() = 0;
  virtual void detach() = 0;
  /// Of writers alone:
  virtual int validate() { refuseWrite("validate"); }
  virtual int validateFiles() { refuseWrite("validateFiles"); }
  virtual void cleanup() { refuseWrite("cleanup"); }
  virtual void write(const Value&, bool) { refuseWrite("write"); }
  virtual void remove(const Key&, const Value&) { refuseWrite("remove"); }
  /// The record, valid until the next operation, and `found` set. Without one, the result is
  /// a default record.
  virtual const Value* lookup(const Key& key, bool& found, IterHint hint) const = 0;
  /// Copies the first record; false when there is none.
  virtual bool first(Value* value, IterHint& hint) const = 0;
  /// Copies the record after `key`, which need not be there any more; false at the end.
  virtual bool next(const Key& key, Value* value, IterHint& hint) const = 0;
  /// The records that it has, and how many it may have; what kind of table it is:
  virtual std::size_t members() const = 0;
  virtual std::size_t minSize() const = 0;
  virtual std::size_t maxSize() const = 0;
  virtual std::size_t capacity() const = 0;
  virtual int type() const = 0;
  /// Writing in place, of writers alone:
  virtual Value* directWrite(const Key&) { refuseWrite("write"); }
  virtual Value* directUpdate(const Key&) { refuseWrite("write"); }
  virtual void directCommit() { refuseWrite("write"); }
  /// `lookup` without a copy, where a table can.
  virtual const Value* directLookup(const Key& key, bool& found, IterHint hint) const {
    return lookup(key, found, hint);
  }
  /// What the table tells of itself and of its service; a table in memory has little to tell:
  virtual WriterCounters writerCounters() const { refuseUnimplemented("writerCounters"); }
  virtual ReaderCounters readerCounters() const { refuseUnimplemented("readerCounters"); }
  virtual void notifying(bool) {}
  virtual void yieldTimeIs(double) {}
  virtual void sampleIs(std::uint32_t) {}
  virtual std::uint64_t sequence() const { return 0; }
  virtual void clientQuiesced(const std::string&) { refuseUnimplemented("clientQuiesced"); }
  virtual bool quiesced() const { return false; }
  virtual bool connected() const { return false; }
  virtual RootPath rootPath() const = 0;
  virtual std::string vantaName() const { return rootPath().name(); }
  virtual int mountStatus() const = 0;
  virtual std::uint64_t corvexId() const { return 0; }
  virtual VersionAnchor validateVersionAnchor() { refuseUnimplemented("validateVersionAnchor"); }
  virtual VersionAnchor getCacheVersionAnchor() { refuseUnimplemented("getCacheVersionAnchor"); }
  /// Whether the members come in the order of their keys, by `operator<`; for prefixes that is the
  /// order of listings. An implementation that promises it gives, as `next` of a key that it does
  /// not have, the first member behind that key, so that a walk can begin anywhere.
  virtual bool inKeyOrder() const { return false; }

 protected:
  [[noreturn]] static void refuseWrite(const char* operation) {
    throw Tembra::NoPermissionException(std::string(operation) + " to read-only Vanta table");
  }
  [[noreturn]] static void refuseUnimplemented(const char* operation) {
    throw Tembra::UnimplementedException(std::string(operation) + "() not implemented");
  }
};

} // namespace Vanta
