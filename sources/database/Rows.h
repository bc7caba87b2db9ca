// How each shared table stands in the database: its columns, and its records in them. A person may
// query what is here (docs/database.md); `Schema.cpp` declares it.
//
// A description has the columns of the key, in whose order the rows stand, those of the rest, and
// those that are there for a person alone; reads and writes a record; and tells that order.
#pragma once

#include "sources/database/ChangeLog.h"
#include "sources/database/Columns.h"

#include "state/Families.h"

#include <cstring>
#include <vector>

namespace sources::database {

using Names = std::vector<const char*>;

/// A key as messages show it.
inline std::string shownKey(const Kesh::Prefix& key) { return key.stringValue().str(); }
inline std::string shownKey(const Kesh::Ip6Prefix& key) { return key.stringValue().str(); }
inline std::string shownKey(Vanta::Fib::FecId key) { return std::to_string(key.value()); }
inline std::string shownKey(Vrf::VrfIdMap::VrfId key) { return std::to_string(key.value()); }
inline std::string shownKey(const Gaugex::CounterIndex& key) { return std::to_string(key.index()); }
inline std::string shownKey(const NexthopGroup::NexthopGroupEntryKey& key) {
  return key.nhgName().str();
}
inline std::string shownKey(const Arp::Table::ArpKey& key) {
  return key.address.stringValue().str() + " on " + key.intfId.stringValue().str();
}
inline std::string shownKey(const Routing::NexthopGroup::NexthopGroupEntryCounterKey& key) {
  return std::to_string(key.nhgId.value()) + "." + std::to_string(key.entryIndex);
}
template <class Prefix>
std::string shownKey(const Vanta::BasicUnprogrammedRouteKey<Prefix>& key) {
  return shownKey(key.prefix) + " of VRF " + shownKey(key.vrfId);
}

/// The families with the digit in the names of their tables.
struct Ip4 : state::Ip4 {
  static constexpr const char* digit = "4";
  /// Whether a route must have a FEC, since its listing stops at one without.
  static constexpr bool needsFec = false;
};
struct Ip6 : state::Ip6 {
  static constexpr const char* digit = "6";
  static constexpr bool needsFec = true;
};

/// What most tables have: rows in the order of their keys, one a record.
struct PlainRows {
  static constexpr bool inKeyOrder = true;
  static constexpr bool manyRows = false;
  /// Whether many look-ups under one hold make it worth to read all.
  static constexpr bool readsAllForMany = false;
  std::string table;
  std::optional<std::int64_t> vrf = {}; ///< of whose VRF the rows are, for tables of all VRFs

  /// Says in the log what happened to the record of a key.
  template <class Key>
  void log(ChangeLog& log, What, const Key&) const {
    log.other(table);
  }
  template <class Key>
  static bool before(const Key& a, const Key& b) {
    return a < b;
  }
  /// The columns behind those, which no record is read from: `now` is in milliseconds since 1970.
  static Names extras() { return {}; }
  template <class Value>
  static void bindExtras(Statement&, const Value&, std::int64_t /*now*/) {}
  /// Calls `visit` with the interfaces of a record.
  template <class Value, class Visit>
  static void eachInterface(const Value&, Visit&&) {}
};

/// The numbers of the route types that have a word.
template <class RouteType>
std::uint64_t knownRouteTypes() {
  std::uint64_t known = 0;
  for (std::uint32_t number = 0; number < 64; ++number) {
    if (!state::routeTypeName(RouteType{number}).empty()) known |= std::uint64_t{1} << number;
  }
  return known;
}

template <class Family>
struct RouteRows : PlainRows {
  using Key = typename Family::Prefix;
  using Value = typename Family::Route;

  explicit RouteRows(Vrf::VrfIdMap::VrfId id) {
    table = std::string("route") + Family::digit;
    vrf = id.value();
  }
  static Names keys() { return {"last", "rest"}; }
  static Names values() { return {"fec", "type", "preference", "metric", "source_vrf"}; }

  static void bindKey(Statement& statement, const Key& key) { bindPrefix(statement, key); }
  static void bindValues(Statement& statement, const Value& route) {
    statement.bind(static_cast<std::int64_t>(route.fecId.value()))
        .bind(std::int64_t{static_cast<std::uint32_t>(route.routeType)})
        .bind(std::int64_t{route.preference()})
        .bind(std::int64_t{route.metric});
    const auto source = route.srcVrfId().value();
    source == Vrf::VrfIdMap::VrfId::none ? statement.bindNull()
                                         : statement.bind(std::int64_t{source});
  }
  static void readKey(Statement& row, Key& key, Session&) { readPrefix(row, key); }
  static void readValues(Statement& row, Value& route, Session& session) {
    route.fecId = Vanta::Fib::FecId(row.number("fec", maxFecId));
    if (Family::needsFec) {
      if (route.fecId.isNull()) row.wrong("fec", "a FEC");
      session.requireFec(route.fecId);
    }
    static const std::uint64_t known = knownRouteTypes<typename Family::RouteType>();
    const auto type = row.number("type", 63);
    if (!(known >> type & 1)) row.wrong("type", "a type that has a word");
    route.routeType = static_cast<typename Family::RouteType>(type);
    route.preferenceIs(static_cast<std::uint8_t>(row.number("preference", 255)));
    route.metric = readWord(row, "metric");
    route.srcVrfIdIs(row.null() ? Vrf::VrfIdMap::VrfId(Vrf::VrfIdMap::VrfId::none)
                                : readVrfId(row, "source_vrf"));
  }
  static Names extras() { return {"since", "prefix"}; }
  static void bindExtras(Statement& statement, const Value& route, std::int64_t now) {
    statement.bind(now);
    // SQL can write an IPv4 prefix.
    if (std::is_same_v<Family, Ip6>) {
      statement.bindText(route.key.stringValue().view());
    } else {
      statement.bindNull();
    }
  }
  static bool isSame(const Value& a, const Value& b) { return a == b; }
  void log(ChangeLog& log, What what, const Key& key) const { log.route(what, *vrf, key); }
};

/// A FEC has a row of its own, and one more for each of its vias.
template <class Fec>
struct FecRows : PlainRows {
  using Key = Vanta::Fib::FecId;
  using Value = Fec;
  using Via = typename Fec::ViaType;
  static constexpr bool manyRows = true;
  static constexpr bool readsAllForMany = true;

  explicit FecRows(std::string name) { table = std::move(name); }
  static Names keys() { return {"id"}; }
  static Names values() { return {"backup"}; }
  std::string viaTable() const { return table + "_via"; }
  static Names viaValues() {
    return {"place", "hop", "interface", "label", "label_action", "weight"};
  }

  static void bindKey(Statement& statement, Key id) {
    statement.bind(static_cast<std::int64_t>(id.value()));
  }
  static void bindValues(Statement& statement, const Value& fec) {
    statement.bind(std::int64_t{fec.backupViaIndex});
  }
  static void bindVia(Statement& statement, std::uint32_t place, const Via& via) {
    statement.bind(std::int64_t{place});
    bindAddress(statement, via.hop);
    bindInterface(statement, via.intfId);
    const auto label = via.labelAndAction.value() & 0xffffff;
    label == Kesh::MplsLabel::null ? statement.bindNull() : statement.bind(std::int64_t{label});
    statement.bind(std::int64_t{via.labelAndAction.action()}).bind(std::int64_t{via.weight});
  }
  static void readKey(Statement& row, Key& id, Session&) { id = Key(row.number("id", maxFecId)); }
  static void readValues(Statement& row, Value& fec, Session& session) {
    fec.backupViaIndex =
        static_cast<std::uint32_t>(row.number("backup", Vanta::Fib::ViaIndex::max));
    fec.viaCount = 0;
    if (!row.null()) readVia(row, fec, session);
  }
  /// The via of a row behind the first.
  static void readMore(Statement& row, Value& fec, Session& session) {
    row.number("backup", Vanta::Fib::ViaIndex::max);
    readVia(row, fec, session);
  }
  template <class Visit>
  static void eachInterface(const Value& fec, Visit&& visit) {
    for (std::uint32_t i = 0; i < vias(fec); ++i) visit(fec.via(Vanta::Fib::ViaIndex(i)).intfId);
  }
  /// Routes lead to FECs that are no policy's.
  void log(ChangeLog& log, What what, Key id) const {
    table == "policy_fec" ? log.other(table) : log.fec(what, id);
  }
  static std::uint32_t vias(const Value& fec) { return std::min(fec.viaCount, Value::maxVias); }
  static bool isSame(const Value& a, const Value& b) {
    return a.backupViaIndex == b.backupViaIndex && vias(a) == vias(b) && sameVias(a, b);
  }

 private:
  static bool sameVias(const Value& a, const Value& b) {
    for (std::uint32_t i = 0; i < vias(a); ++i) {
      const Via &one = a.via(Vanta::Fib::ViaIndex(i)), &other = b.via(Vanta::Fib::ViaIndex(i));
      if (std::memcmp(&one, &other, sizeof one) != 0) return false; // it has no padding
    }
    return true;
  }
  static void readVia(Statement& row, Value& fec, Session& session) {
    if (row.number("place", Vanta::Fib::ViaIndex::max) != fec.viaCount) {
      row.wrong("place", std::to_string(fec.viaCount));
    }
    Via via;
    readAddress(row, "hop", via.hop);
    via.intfId = readInterface(row, "interface", session);
    if (!row.null()) {
      via.labelAndAction.labelIs(Kesh::MplsLabel(
          static_cast<std::uint32_t>(row.number("label", Kesh::MplsLabel::luWithdraw))));
    }
    via.labelAndAction.actionIs(static_cast<std::uint8_t>(row.number("label_action", 255)));
    via.weight = readWord(row, "weight");
    fec.viaAppend(via);
  }
};

/// Neighbours of one family. Their key begins with a VRF, which is none of the scope's.
struct NeighbourRows : PlainRows {
  using Key = Arp::Table::ArpKey;
  using Value = Arp::Table::ArpEntry;
  static constexpr bool inKeyOrder = false; // interfaces order by their names

  explicit NeighbourRows(std::string name) { table = std::move(name); }
  static Names keys() { return {"vrf", "interface", "address"}; }
  static Names values() { return {"mac"}; }

  static void bindKey(Statement& statement, const Key& key) {
    statement.bind(std::int64_t{key.vrfId.value()}).bind(signedInterface(key.intfId));
    statement.bindText(key.address.stringValue().view());
  }
  static void bindValues(Statement& statement, const Value& entry) {
    statement.bindText(entry.ethAddr.stringValue().view());
  }
  static void readKey(Statement& row, Key& key, Session& session) {
    key.vrfId = readVrfId(row, "vrf");
    key.intfId = readInterface(row, "interface", session);
    const auto address = Kesh::IpGenAddr::parse(row.text("address"));
    if (!address) row.wrong("address", "an address");
    key.address = *address;
  }
  static void readValues(Statement& row, Value& entry, Session&) {
    const auto mac = Kesh::EthAddr::parse(row.text("mac"));
    if (!mac) row.wrong("mac", "an Ethernet address");
    entry.ethAddr = *mac;
  }
  static bool before(const Key& a, const Key& b) {
    if (a.vrfId != b.vrfId) return a.vrfId < b.vrfId;
    const auto first = signedInterface(a.intfId), second = signedInterface(b.intfId);
    if (first != second) return first < second;
    return a.address.stringValue().view() < b.address.stringValue().view();
  }
  template <class Visit>
  static void eachInterface(const Value& entry, Visit&& visit) {
    visit(entry.key.intfId);
  }
  static bool isSame(const Value& a, const Value& b) { return a.ethAddr == b.ethAddr; }
};

struct NexthopGroupRows : PlainRows {
  using Key = NexthopGroup::NexthopGroupEntryKey;
  using Value = NexthopGroup::NexthopGroupEntry;
  static constexpr bool inKeyOrder = false; // bytes order as numbers with a sign there

  NexthopGroupRows() { table = "nexthop_group"; }
  static Names keys() { return {"name"}; }
  static Names values() { return {"id"}; }

  static void bindKey(Statement& statement, const Key& key) {
    statement.bindText(key.nhgName().view());
  }
  static void bindValues(Statement& statement, const Value& entry) {
    statement.bind(std::int64_t{entry.nhgId.value()});
  }
  static void readKey(Statement& row, Key& key, Session&) {
    const auto name = row.text("name");
    if (name.empty() || name.size() > Key::maxBytes) row.wrong("name", "1 to 128 bytes");
    key.nhgNameIs(Lumo::String(name));
  }
  static void readValues(Statement& row, Value& entry, Session&) {
    entry.nhgId = readWord(row, "id");
  }
  static bool before(const Key& a, const Key& b) { return a.nhgName().view() < b.nhgName().view(); }
  static bool isSame(const Value& a, const Value& b) { return a.nhgId.value() == b.nhgId.value(); }
};

struct CounterKeyRows : PlainRows {
  using Key = Routing::NexthopGroup::NexthopGroupEntryCounterKey;
  using Value = Routing::NexthopGroup::NexthopGroupEntryCounterKeyInfo;

  CounterKeyRows() { table = "counter_key"; }
  static Names keys() { return {"nexthop_group", "entry"}; }
  static Names values() { return {"first_half", "counter"}; }

  static void bindKey(Statement& statement, const Key& key) {
    statement.bind(std::int64_t{key.nhgId.value()}).bind(std::int64_t{key.entryIndex});
  }
  static void bindValues(Statement& statement, const Value& info) {
    statement.bind(static_cast<std::int64_t>(info.firstHalf))
        .bind(static_cast<std::int64_t>(info.counterIndex));
  }
  static void readKey(Statement& row, Key& key, Session&) {
    key.nhgId = readWord(row, "nexthop_group");
    key.entryIndex = readWord(row, "entry");
  }
  static void readValues(Statement& row, Value& info, Session&) {
    info.firstHalf = static_cast<std::uint64_t>(row.integer("first_half"));
    info.counterIndex = static_cast<std::uint64_t>(row.integer("counter"));
  }
  static bool isSame(const Value& a, const Value& b) { return a == b; }
};

struct CounterRows : PlainRows {
  using Key = Gaugex::CounterIndex;
  using Value = Gaugex::VantaGaugexCounter;
  static constexpr bool inKeyOrder = false; // the upper half of the numbers stands ahead

  explicit CounterRows(std::string name) { table = std::move(name); }
  static Names keys() { return {"id"}; }
  static Names values() { return {"packets", "bytes"}; }

  static std::int64_t place(const Key& key) { return static_cast<std::int64_t>(key.index()); }
  static void bindKey(Statement& statement, const Key& key) { statement.bind(place(key)); }
  static void bindValues(Statement& statement, const Value& counter) {
    statement.bind(static_cast<std::int64_t>(counter.packets))
        .bind(static_cast<std::int64_t>(counter.bytes));
  }
  static void readKey(Statement& row, Key& key, Session&) {
    key = Key(static_cast<std::uint64_t>(row.integer("id")));
  }
  static void readValues(Statement& row, Value& counter, Session&) {
    counter.packets = static_cast<std::uint64_t>(row.integer("packets"));
    counter.bytes = static_cast<std::uint64_t>(row.integer("bytes"));
  }
  static bool before(const Key& a, const Key& b) { return place(a) < place(b); }
  static bool isSame(const Value& a, const Value& b) { return a == b; }
};

/// Routes that are missing from the hardware: presence is what counts.
template <class Family>
struct UnprogrammedRows : PlainRows {
  using Prefix = typename Family::Prefix;
  using Key = Vanta::BasicUnprogrammedRouteKey<Prefix>;
  using Value = Vanta::BasicUnprogrammedRoute<Prefix>;

  UnprogrammedRows() { table = std::string("unprogrammed") + Family::digit; }
  static Names keys() { return {"last", "rest", "vrf"}; }
  static Names values() { return {}; }

  static void bindKey(Statement& statement, const Key& key) {
    bindPrefix(statement, key.prefix);
    statement.bind(std::int64_t{key.vrfId.value()});
  }
  static void bindValues(Statement&, const Value&) {}
  static void readKey(Statement& row, Key& key, Session&) {
    readPrefix(row, key.prefix);
    key.vrfId = readVrfId(row, "vrf");
  }
  static void readValues(Statement&, Value&, Session&) {}
  static bool isSame(const Value&, const Value&) { return true; }
};

/// How many those are by VRF.
template <class Family>
struct UnprogrammedCountRows : PlainRows {
  using Key = Vrf::VrfIdMap::VrfId;
  using Value = Vanta::UnprogrammedRouteCount;

  UnprogrammedCountRows() { table = std::string("unprogrammed_count") + Family::digit; }
  static Names keys() { return {"vrf"}; }
  static Names values() { return {"routes"}; }

  static void bindKey(Statement& statement, Key id) { statement.bind(std::int64_t{id.value()}); }
  static void bindValues(Statement& statement, const Value& count) {
    statement.bind(std::int64_t{count.count});
  }
  static void readKey(Statement& row, Key& key, Session&) { key = readVrfId(row, "vrf"); }
  static void readValues(Statement& row, Value& count, Session&) {
    count.count = readWord(row, "routes");
  }
  static bool isSame(const Value& a, const Value& b) { return a.count == b.count; }
};

/// Routes that the kernel refused.
template <class Family>
struct KernelErrorRows : PlainRows {
  using Key = typename Family::Prefix;
  using Value = typename Family::KernelError;

  explicit KernelErrorRows(Vrf::VrfIdMap::VrfId id) {
    table = std::string("kernel_error") + Family::digit;
    vrf = id.value();
  }
  static Names keys() { return {"last", "rest"}; }
  static Names values() { return {"interface", "error"}; }

  static void bindKey(Statement& statement, const Key& key) { bindPrefix(statement, key); }
  static void bindValues(Statement& statement, const Value& error) {
    bindInterface(statement, error.intfId);
    statement.bind(std::int64_t{error.error});
  }
  static void readKey(Statement& row, Key& key, Session&) { readPrefix(row, key); }
  static void readValues(Statement& row, Value& error, Session& session) {
    error.intfId = readInterface(row, "interface", session);
    const auto number = row.integer("error");
    error.error = static_cast<std::int32_t>(number);
    if (error.error != number) row.wrong("error", "a number of 32 bits");
  }
  template <class Visit>
  static void eachInterface(const Value& error, Visit&& visit) {
    visit(error.intfId);
  }
  static bool isSame(const Value& a, const Value& b) { return a == b; }
};

} // namespace sources::database
