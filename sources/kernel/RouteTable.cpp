#include "sources/kernel/RouteTable.h"

#include <map>
#include <set>

namespace sources::kernel {

namespace {

template <class Row>
struct Order {
  bool operator()(const Row& a, const Row& b) const { return isBefore(a, b); }
};

/// By VRF and prefix alone.
template <class Row>
bool isBeforePrefix(const Row& a, const Row& b) {
  if (vrfTable(a.table) != vrfTable(b.table)) return vrfTable(a.table) < vrfTable(b.table);
  return a.prefix < b.prefix;
}

/// The first key that a row of the prefix can have.
template <class Row>
Row firstOf(Row key) {
  if (vrfTable(key.table) == RT_TABLE_MAIN) key.table = RT_TABLE_LOCAL;
  key.tos = 0;
  key.metric = 0;
  return key;
}

/// Whether two hops lead the same way, whatever the kernel says of their state and weight.
bool isSameWay(const Hop& a, const Hop& b) {
  return a.gateway == b.gateway && a.interface == b.interface && a.label == b.label &&
         a.encapsulation == b.encapsulation;
}

} // namespace

/// Brings a journal into a table: the rows of the keys that it touches are kept apart, and all are
/// merged at the end. A loss takes the rows that were there before it, so that each row and each
/// loss has a time: the place of its event in the journal, 0 for the rows of the table.
template <class Family>
class RouteTable<Family>::Update {
 public:
  Update(const std::vector<Row>& rows, HopLists& lists, bool mixesProtocols)
      : rows_(rows),
        lists_(lists),
        losses_(lists.lists().size()),
        mixesProtocols_(mixesProtocols) {}

  bool mixesProtocols() const { return mixesProtocols_; }
  /// Whether a hop went since this was asked, behind which one of another protocol may be first.
  bool lostProtocol() { return std::exchange(lostProtocol_, false); }

  void add(const Event& event) {
    ++now_;
    std::visit([&](const auto& one) { apply(one); }, event);
  }

  std::size_t size() const { return touched_.size(); }

  /// Calls `visit` with the rows of the keys that were touched from `first` on, key by key, until
  /// it returns false.
  template <class Visit>
  void forEachFrom(const Row& first, Visit&& visit) const {
    for (auto at = touched_.lower_bound(first); at != touched_.end(); ++at) {
      if (!visit(at->first, at->second)) return;
    }
  }
  template <class Visit>
  void forEachAll(Visit&& visit) const {
    for (const auto& [key, equals] : touched_) {
      for (const TimedRow& one : equals) visit(one.row);
    }
  }
  bool touches(const Row& row) const { return touched_.contains(row); }

  std::vector<Row> merged() const {
    std::vector<Row> out;
    out.reserve(rows_.size() + touched_.size());
    auto row = rows_.begin();
    for (const auto& [key, equals] : touched_) {
      for (; row != rows_.end() && isBefore(*row, key); ++row) keep({*row, 0}, out);
      while (row != rows_.end() && !isBefore(key, *row)) ++row;
      for (const TimedRow& one : equals) keep(one, out);
    }
    for (; row != rows_.end(); ++row) keep({*row, 0}, out);
    return out;
  }

 private:
  using Time = std::uint32_t;
  struct TimedRow {
    Row row;
    Time since;
  };
  using Equals = std::vector<TimedRow>; // rows that differ in their hops alone

  /// When the routes of a hop list were lost last.
  struct Losses {
    Time forwarding = 0; ///< all but those to own addresses
    Time all = 0;
  };
  bool isLost(const TimedRow& one) const {
    if (one.row.hopList >= losses_.size()) return false;
    const Losses& losses = losses_[one.row.hopList];
    return losses.all > one.since || (losses.forwarding > one.since && one.row.type != RTN_LOCAL);
  }
  void keep(const TimedRow& one, std::vector<Row>& out) const {
    if (!isLost(one)) out.push_back(one.row);
  }

  void apply(const RowChange& event) {
    Equals& equals = equalsOf(event.row);
    if (event.change == Change::removed) return remove(event.row, equals);
    // What replaces another in IPv6 takes the first one's place, be its like among them or not.
    const bool takesFirst = Family::tellsSiblings && event.change == Change::replaced;
    const auto same = takesFirst ? equals.end() : findSame(event.row, equals);
    if (same != equals.end()) {
      *same = {inPlaceOf(same->row, event), now_}; // its state changed, or the dump has it already
    } else {
      enter(event, equals);
    }
  }

  void apply(const Loss& loss) {
    losses_.resize(lists_.lists().size());
    if (loss.interface != 0) {
      const bool all = loss.interfaceGone || !Family::keepsOwnAddresses;
      for (const std::uint32_t list : lists_.over(loss.interface)) {
        if (loss.objectsStay && lists_.lists()[list].nexthopId != 0) continue;
        (all ? losses_[list].all : losses_[list].forwarding) = now_;
      }
    } else if (loss.nexthop != 0) {
      for (const std::uint32_t list : lists_.overNexthop(loss.nexthop)) losses_[list].all = now_;
    } else {
      for (const std::uint32_t list : lists_.from(loss.source)) losses_[list].all = now_;
    }
  }

  Equals& equalsOf(const Row& row) {
    const auto [at, isNew] = touched_.try_emplace(row);
    if (isNew) {
      const auto [first, last] = std::equal_range(rows_.begin(), rows_.end(), row, isBefore<Row>);
      for (auto one = first; one != last; ++one) at->second.push_back({*one, 0});
    }
    std::erase_if(at->second, [&](const TimedRow& one) { return isLost(one); });
    return at->second;
  }

  std::span<const Hop> hopsOf(const Row& row) const { return lists_.hops(row.hopList); }
  std::uint32_t nexthopOf(const Row& row) const { return lists_.lists()[row.hopList].nexthopId; }

  bool isSame(const Row& a, const Row& b) const {
    if (nexthopOf(a) != nexthopOf(b)) return false;
    // Whether a route over a nexthop object drops is what the object says by then.
    if (nexthopOf(a) == 0 && a.type != b.type) return false;
    if (Family::detailsTellApart && !hasSameDetails(a, b)) return false;
    return nexthopOf(a) != 0 || std::ranges::equal(hopsOf(a), hopsOf(b), isSameWay);
  }
  bool hasSameDetails(const Row& a, const Row& b) const {
    const auto sourceOf = [&](const Row& row) { return lists_.lists()[row.hopList].source; };
    return a.protocol == b.protocol && sourceOf(a) == sourceOf(b) &&
           (nexthopOf(a) != 0 ||
            std::ranges::equal(hopsOf(a), hopsOf(b), {}, &Hop::weight, &Hop::weight));
  }
  auto findSame(const Row& row, Equals& equals) const {
    return std::ranges::find_if(equals, [&](const TimedRow& one) { return isSame(row, one.row); });
  }

  /// Whether the kernel joins the row with others of its kind to one route.
  bool isJoined(const Row& row) const {
    if (!Family::tellsSiblings || row.type != RTN_UNICAST || nexthopOf(row) != 0) return false;
    const auto hops = hopsOf(row);
    if (hops.size() > 1) return true;
    const bool advertised = row.protocol == RTPROT_RA || row.protocol == RTPROT_REDIRECT;
    const bool isThroughGateway =
        hops.size() == 1 && hops[0].gateway != Kesh::IpGenAddr() && hops[0].onLink == 0;
    return isThroughGateway && !advertised;
  }
  auto findJoined(bool joined, Equals& equals) const {
    return std::ranges::find_if(
        equals, [&, joined](const TimedRow& one) { return isJoined(one.row) == joined; });
  }

  /// A joined route is listed with the protocol of its first hop; what enters another hop tells
  /// that of the other.
  Row inPlaceOf(const Row& before, const RowChange& event) {
    Row row = event.row;
    if (event.change == Change::replaced || !isJoined(before)) return row;
    if (row.protocol != before.protocol && hopsOf(row).size() > 1) {
      row.protocol = before.protocol;
      mixesProtocols_ = true;
    }
    return row;
  }

  void enter(const RowChange& event, Equals& equals) {
    const bool joined = isJoined(event.row), replaces = event.change == Change::replaced;
    auto at = findJoined(joined, equals);
    if (at == equals.end() && replaces) at = equals.begin();
    if (at != equals.end() && (replaces || joined)) {
      *at = {inPlaceOf(at->row, event), now_};
      return;
    }
    const bool ahead = Family::entersAhead && event.change == Change::entered;
    equals.insert(ahead ? equals.begin() : equals.end(), {event.row, now_});
  }

  void remove(const Row& row, Equals& equals) {
    const auto same = findSame(row, equals);
    if (same != equals.end()) return void(equals.erase(same));
    const auto joined = findJoined(true, equals);
    if (!isJoined(row) || joined == equals.end()) return;
    removeHops(hopsOf(row), joined->row);
    if (mixesProtocols_ && row.protocol == joined->row.protocol) lostProtocol_ = true;
  }

  /// Takes those hops out of the row, of which others stay.
  void removeHops(std::span<const Hop> gone, Row& row) const {
    std::vector<Hop> left;
    for (const Hop& hop : hopsOf(row)) {
      const auto isIt = [&](const Hop& other) { return isSameWay(hop, other); };
      if (std::ranges::none_of(gone, isIt)) left.push_back(hop);
    }
    const HopListHead head = lists_.lists()[row.hopList];
    if (!left.empty()) row.hopList = lists_.enter(head, left);
  }

  const std::vector<Row>& rows_;
  HopLists& lists_;
  std::map<Row, Equals, Order<Row>> touched_;
  std::vector<Losses> losses_; ///< by hop list
  Time now_ = 0;
  bool mixesProtocols_; ///< of the hops of some joined route
  bool lostProtocol_ = false;
};

template <class Family>
void RouteTable<Family>::begin() {
  settle();
  incoming_.clear();
  dumpBegins();
}

template <class Family>
void RouteTable<Family>::end(const DumpEnd& how) {
  putInOrder(incoming_);
  if (isExact(how) || !wasDumped()) {
    rows_ = std::move(incoming_);
  } else {
    unite();
  }
  incoming_ = {};
  dumpEnds(how);
}

/// Adds what the dump brought. Of a key that it has it knows better, of any other it says nothing;
/// the journal, which began with the dump, comes over both.
template <class Family>
void RouteTable<Family>::unite() {
  std::set<Row, Order<Row>> told;
  for (const Event& event : journal_) {
    if (const auto* const change = std::get_if<RowChange>(&event)) told.insert(change->row);
  }
  std::vector<Row> all;
  all.reserve(rows_.size() + incoming_.size());
  auto old = rows_.begin();
  for (const Row& row : incoming_) {
    for (; old != rows_.end() && isBefore(*old, row); ++old) all.push_back(*old);
    const bool isFirst = all.empty() || isBefore(all.back(), row);
    const bool isKnown = old != rows_.end() && !isBefore(row, *old);
    if (isFirst && !isKnown && !told.contains(row)) foundUnknown();
    all.push_back(row);
    while (old != rows_.end() && !isBefore(row, *old)) ++old;
  }
  all.insert(all.end(), old, rows_.end());
  rows_ = std::move(all);
}

template <class Family>
void RouteTable<Family>::changed(const Row& row, Change change) {
  notified();
  journal_.push_back(RowChange{row, change});
}

template <class Family>
void RouteTable<Family>::lost(const Loss& loss) {
  notified();
  journal_.push_back(loss);
}

template <class Family>
RouteTable<Family>::RouteTable(HopLists& lists) : lists_(lists) {}

template <class Family>
RouteTable<Family>::~RouteTable() = default;

template <class Family>
void RouteTable<Family>::bringIn() {
  // Beyond that, looking in two places costs more than a walk over all rows now and then.
  constexpr std::size_t fewest = 4096, share = 16;
  if (journal_.empty()) return;
  if (!update_) update_ = std::make_unique<Update>(rows_, lists_, mixesProtocols_);
  for (const Event& event : journal_) update_->add(event);
  journal_.clear();
  mixesProtocols_ = update_->mixesProtocols();
  if (update_->lostProtocol()) disturbed();
  if (update_->size() > fewest + rows_.size() / share) settle();
}

template <class Family>
void RouteTable<Family>::settle() {
  bringIn();
  if (!update_) return;
  rows_ = update_->merged();
  update_.reset();
}

template <class Family>
void RouteTable<Family>::moveTo(HopLists& to) {
  settle();
  for (Row& row : rows_) {
    row.hopList = to.enter(lists_.lists()[row.hopList], lists_.hops(row.hopList));
  }
}

template <class Family>
std::vector<RouteRow<Family>> RouteTable<Family>::touched() const {
  std::vector<Row> rows;
  for (const Event& event : journal_) {
    if (const auto* const change = std::get_if<RowChange>(&event)) rows.push_back(change->row);
  }
  std::ranges::sort(rows, isBeforePrefix<Row>);
  const auto same = [](const Row& a, const Row& b) { return !isBeforePrefix(a, b); };
  rows.erase(std::unique(rows.begin(), rows.end(), same), rows.end());
  return rows;
}

template <class Family>
std::vector<RouteRow<Family>> RouteTable<Family>::rowsAt(const Row& key) const {
  std::vector<Row> found;
  const auto [first, last] = std::equal_range(rows_.begin(), rows_.end(), key, isBeforePrefix<Row>);
  if (!update_) return {first, last};
  std::copy_if(first, last, std::back_inserter(found),
               [&](const Row& row) { return !update_->touches(row); });
  update_->forEachFrom(firstOf(key), [&](const Row& at, const auto& equals) {
    if (isBeforePrefix(key, at)) return false;
    for (const auto& one : equals) found.push_back(one.row);
    return true;
  });
  std::ranges::stable_sort(found, isBefore<Row>);
  return found;
}

template <class Family>
bool RouteTable<Family>::hasRows(std::uint32_t table) const {
  const auto isElsewhere = [&](const Row& row) { return vrfTable(row.table) != vrfTable(table); };
  const auto before = [&](const Row& row, std::uint32_t other) {
    return vrfTable(row.table) < vrfTable(other);
  };
  for (auto at = std::lower_bound(rows_.begin(), rows_.end(), table, before);
       at != rows_.end() && !isElsewhere(*at); ++at) {
    if (!update_ || !update_->touches(*at)) return true;
  }
  bool found = false;
  if (!update_) return found;
  update_->forEachAll([&](const Row& row) { found = found || !isElsewhere(row); });
  return found;
}

template <class Family>
std::vector<RouteRow<Family>> RouteTable<Family>::take() {
  settle();
  return std::move(rows_);
}

template class RouteTable<Ip4>;
template class RouteTable<Ip6>;

} // namespace sources::kernel
