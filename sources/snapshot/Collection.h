// Objects whose keys are identifiers, and arrays of records: each identifier stands there once.
#pragma once

#include "Codec.h"
#include "Field.h"

#include "lumo/HashMap2018.h"
#include "lumo/Order.h"
#include "lumo/RbTreeMap.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <utility>
#include <vector>

namespace sources::snapshot {

/// Finds a key that comes twice, by value: "2001:DB8::/32" and "2001:db8::/32" are one key. Keys
/// that come in ascending order, as they do in a saved file, cost one comparison each.
template <class Key>
class Unique {
 public:
  void add(const Key& key) {
    ascending_ = ascending_ && (keys_.empty() || keys_.back() < key);
    keys_.push_back(key);
  }

  /// Raises `SourceError` for the collection `node` when a key came twice; `show(key)` is its text.
  template <class Show>
  void check(Node& node, Show&& show) {
    if (ascending_) return;
    const auto ordered =
        Lumo::inOrder(std::vector<Key>(keys_.begin(), keys_.end()), std::less<Key>());
    const auto twice = std::adjacent_find(ordered.begin(), ordered.end());
    if (twice != ordered.end()) node.fail(show(*twice) + " twice", "each key once");
  }

 private:
  std::deque<Key> keys_;
  bool ascending_ = true;
};

/// Tells of each key at once whether it came before. Keys that come in ascending order, as they do
/// in a saved file, cost one comparison each.
template <class Key>
class Distinct {
 public:
  /// False for a key that is there already.
  bool add(const Key& key) {
    if (others_.find(key)) return false;
    if (ascending_.empty() || ascending_.back() < key) {
      ascending_.push_back(key);
      return true;
    }
    if (std::binary_search(ascending_.begin(), ascending_.end(), key)) return false;
    others_.insertOrAssign(key, true);
    return true;
  }

 private:
  std::deque<Key> ascending_;
  Lumo::HashMap2018<Key, bool> others_;
};

/// A key in quotes, for messages.
template <class Key>
std::string quotedKey(const Key& key) {
  std::string text;
  appendQuoted(text, Text<Key>::write(key));
  return text;
}

/// Reads an object from keys of one type; calls `read(key, node)` for each member.
template <class Key, class Read>
void readMap(Node& node, Read&& read) {
  Unique<Key> unique;
  node.members([&](std::string_view text, Node& value) {
    const Key key = parseText<Key>(value, text);
    unique.add(key);
    read(key, value);
  });
  unique.check(node, quotedKey<Key>);
}

/// The members of a hashed collection in the order of their keys.
template <class Key, class Value>
std::vector<std::pair<Key, const Value*>> sorted(const Lumo::HashMap2018<Key, Value>& map) {
  std::vector<std::pair<Key, const Value*>> members;
  members.reserve(map.size());
  map.forEach([&](const Key& key, const Value& value) { members.emplace_back(key, &value); });
  return Lumo::inOrder(std::move(members),
                       [](const auto& a, const auto& b) { return a.first < b.first; });
}

template <class Key, class Value>
std::vector<std::pair<Key, const Value*>> sorted(const Lumo::RbTreeMap<Key, Value>& map) {
  std::vector<std::pair<Key, const Value*>> members;
  members.reserve(map.size());
  for (const auto& [key, value] : map) members.emplace_back(key, &value);
  return members;
}

/// Writes an object with a line a member; `write(value)` writes what stands under the key.
template <class Map, class Write>
void writeMap(Output& out, const Map& map, Write&& write) {
  const auto scope = out.object(Output::Layout::lines);
  for (const auto& [key, value] : sorted(map)) {
    out.key(Text<typename Map::KeyType>::write(key));
    write(*value);
  }
}

template <class Map>
struct MapCodec {
  using Value = typename Map::ValueType;
  static Map read(Node& node) {
    Map map;
    readMap<typename Map::KeyType>(node, [&](const auto& key, Node& value) {
      map.insertOrAssign(key, Codec<Value>::read(value));
    });
    return map;
  }
  static void write(Output& out, const Map& map) {
    writeMap(out, map, [&](const Value& value) { Codec<Value>::write(out, value); });
  }
};
template <class Key, class Value>
struct Codec<Lumo::HashMap2018<Key, Value>> : MapCodec<Lumo::HashMap2018<Key, Value>> {};
template <class Key, class Value>
struct Codec<Lumo::RbTreeMap<Key, Value>> : MapCodec<Lumo::RbTreeMap<Key, Value>> {};

/// Reads records by key into a hashed collection.
template <class Key, class Record, class Fields>
void readRecords(Node& node, Lumo::HashMap2018<Key, Record>& map, const Fields& fields) {
  readMap<Key>(node, [&](const Key& key, Node& value) {
    Record record;
    if constexpr (requires { record.key = key; }) record.key = key;
    if constexpr (requires { record.intfId = key; }) record.intfId = key;
    readFields(value, fields, record);
    map.insertOrAssign(key, std::move(record));
  });
}

/// A member of an entity that is such a collection, its records of those fields.
template <class Owner, auto Member, const auto& Fields>
constexpr Field<Owner> recordMap(std::string_view name) {
  return {name, [](Node& node, Owner& owner) { readRecords(node, owner.*Member, Fields); },
          [](const Owner& owner) { return !(owner.*Member).empty(); },
          [](Output& out, const Owner& owner) {
            writeMap(out, owner.*Member,
                     [&](const auto& record) { writeFields(out, Fields, record); });
          }};
}

/// Calls `visit` with the records of a shared table in the order of their keys, whatever the
/// table's own is.
template <class View, class Visit>
void forEachRecord(const View& view, Visit&& visit) {
  if (view.implementation().inKeyOrder()) {
    for (typename View::IteratorConst it(view); it; it.next()) visit(it.value());
    return;
  }
  std::vector<typename View::ValueType> records;
  for (typename View::IteratorConst it(view); it; it.next()) records.push_back(it.value());
  std::sort(records.begin(), records.end(),
            [](const auto& a, const auto& b) { return a.key < b.key; });
  for (const auto& record : records) visit(record);
}

/// Writes an object with a line a record of a shared table.
template <class View, class Write>
void writeTable(Output& out, const View& view, Write&& write) {
  const auto scope = out.object(Output::Layout::lines);
  forEachRecord(view, [&](const typename View::ValueType& record) {
    out.key(Text<typename View::KeyType>::write(record.key));
    write(record);
  });
}

} // namespace sources::snapshot
