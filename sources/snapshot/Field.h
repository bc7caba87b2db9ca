// The fields of an object of a snapshot as a table: one row a field says how it is read, when it is
// written, and how. Reading takes the fields in any order, writing goes by the table's.
//
//   constexpr Field<Route> fields[] = {
//       field<Route, &Route::fecId>("fec"),
//       field<Route, &Route::metric>("metric"),
//   };
//   readFields(node, fields, route);
//   writeFields(out, fields, route);
#pragma once

#include "Codec.h"

#include "lumo/Assert.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace sources::snapshot {

/// A field of an object that is read into a `Record` and written from a `Source`. A required field
/// must be there in the text; what `present` tells to be a default is not written.
template <class Record, class Source = Record>
struct Field {
  std::string_view name;
  void (*read)(Node& node, Record& record);
  bool (*present)(const Source& source);
  void (*write)(Output& out, const Source& source);
  bool required = false;

  constexpr Field asRequired() const {
    Field other = *this;
    other.required = true;
    other.present = [](const Source&) { return true; };
    return other;
  }
};

/// A data member, left out while it has the value of a default record.
template <class Record, auto Member>
constexpr Field<Record> field(std::string_view name) {
  using Value = std::decay_t<decltype(std::declval<Record&>().*Member)>;
  return {name, [](Node& node, Record& record) { record.*Member = Codec<Value>::read(node); },
          [](const Record& record) { return !(record.*Member == Record().*Member); },
          [](Output& out, const Record& record) { Codec<Value>::write(out, record.*Member); }};
}

/// The same for a pair of functions that give and take the value.
template <class Record, auto Get, auto Set>
constexpr Field<Record> property(std::string_view name) {
  using Value = std::decay_t<decltype((std::declval<const Record&>().*Get)())>;
  return {name, [](Node& node, Record& record) { (record.*Set)(Codec<Value>::read(node)); },
          [](const Record& record) { return !((record.*Get)() == (Record().*Get)()); },
          [](Output& out, const Record& record) { Codec<Value>::write(out, (record.*Get)()); }};
}

/// "one of "a", "b"", for messages.
std::string oneOf(std::span<const std::string_view> names);

template <class Rows>
std::string namesOf(const Rows& rows) {
  std::vector<std::string_view> names;
  for (const auto& row : rows) names.push_back(row.name);
  return oneOf(names);
}

/// The place of the row with that name; the number of rows when there is none. It is looked for
/// from `start` on, and then ahead of it.
template <class Rows>
std::size_t placeOf(const Rows& rows, std::string_view name, std::size_t start = 0) {
  const std::size_t count = std::size(rows);
  for (std::size_t step = 0; step < count; ++step) {
    const std::size_t place = start + step - (start + step < count ? 0 : count);
    if (rows[place].name == name) return place;
  }
  return count;
}

/// Reads an object: unknown and repeated fields are refused, and required ones missed.
template <class Fields, class Record>
void readFields(Node& node, const Fields& fields, Record& record) {
  std::uint64_t seen = 0;
  std::size_t next = 0; // what programs write has its fields in one order
  LUMO_ASSERT(std::size(fields) <= 64, "a bit for each field");
  node.members([&](std::string_view key, Node& value) {
    const std::size_t place = placeOf(fields, key, next);
    if (place == std::size(fields)) value.fail("an unknown key", namesOf(fields));
    if (seen >> place & 1) value.fail("the key a second time", "each key once");
    seen |= std::uint64_t{1} << place;
    next = place + 1;
    fields[place].read(value, record);
  });
  for (std::size_t place = 0; place < std::size(fields); ++place) {
    if (fields[place].required && !(seen >> place & 1)) node.failMissing(fields[place].name);
  }
}

/// Writes the members of an object whose scope is open.
template <class Fields, class Source>
void writeMembers(Output& out, const Fields& fields, const Source& source) {
  for (const auto& row : fields) {
    if (!row.present(source)) continue;
    out.key(row.name);
    row.write(out, source);
  }
}

template <class Fields, class Source>
void writeFields(Output& out, const Fields& fields, const Source& source,
                 Output::Layout layout = Output::Layout::row) {
  const auto scope = out.object(layout);
  writeMembers(out, fields, source);
}

/// The codec of a record that is an object of those fields.
template <class Record, const auto& Fields>
struct RecordCodec {
  static Record read(Node& node) {
    Record record;
    readFields(node, Fields, record);
    return record;
  }
  static void write(Output& out, const Record& record) { writeFields(out, Fields, record); }
};

template <class Fields, class Source>
bool anyPresent(const Fields& fields, const Source& source) {
  for (const auto& row : fields) {
    if (row.present(source)) return true;
  }
  return false;
}

} // namespace sources::snapshot
