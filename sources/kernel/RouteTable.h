// The routes of one family, kept up to date: see Wholeness.h for the rules.
//
// Rows of a dump are appended to a list, and what is notified to a journal; both are brought
// together when somebody wants the table or another dump begins. So a million routes that stay cost
// no more than reading them, and changes cost by their own number. Who wants what changed has the
// journal brought into an update beside the list, which joins the list when it has grown.
#pragma once

#include "sources/kernel/RouteRows.h"
#include "sources/kernel/Wholeness.h"

#include <memory>
#include <variant>

namespace sources::kernel {

/// What the kernel says of a route that it notifies.
enum class Change : std::uint8_t {
  entered,  ///< added, or changed in place
  appended, ///< added behind its equals
  replaced, ///< put in the place of the first of its equals
  removed
};

/// Routes that the kernel removes without a word, since what they need is gone: one of these.
struct Loss {
  std::uint32_t interface = 0; ///< that of all their hops, which went down
  bool interfaceGone = false;  ///< or was deleted
  bool objectsStay = false;    ///< routes over nexthop objects stay
  Kesh::IpGenAddr source;      ///< the own address that they leave with
  std::uint32_t nexthop = 0;   ///< their nexthop object
};

template <class Family>
class RouteTable : public Wholeness {
 public:
  using Row = RouteRow<Family>;

  /// For rows with hops in those lists, which live as long as the table.
  explicit RouteTable(HopLists& lists);
  ~RouteTable();

  void begin();
  void dumped(const Row& row) { incoming_.push_back(row); }
  void end(const DumpEnd& how);

  void changed(const Row& row, Change change);
  void lost(const Loss& loss);

  /// The rows by now, in the order of `isBefore`.
  std::vector<Row> take();
  /// Undoes `take`.
  void putBack(std::vector<Row> rows) { rows_ = std::move(rows); }

  /// Gives the rows hop lists of `to`, which takes the place of theirs afterwards.
  void moveTo(HopLists& to);

  /// How many rows there are, but for what was notified since they were taken or put back.
  std::size_t size() const { return rows_.size(); }

  // What changed, at the cost of that alone; between dumps.

  /// A row of each prefix that was notified since it was brought in, whatever the row is.
  std::vector<Row> touched() const;
  /// Brings in what was notified.
  void bringIn();
  /// The rows of the prefix of `key` in its VRF by what was brought in, in their order.
  std::vector<Row> rowsAt(const Row& key) const;
  /// Whether the VRF of that table has any.
  bool hasRows(std::uint32_t table) const;

 private:
  struct RowChange {
    Row row;
    Change change;
  };
  using Event = std::variant<RowChange, Loss>;
  class Update;

  void settle();
  void unite();

  HopLists& lists_;
  std::vector<Row> rows_;          ///< in order, as of the time before the journal
  std::vector<Row> incoming_;      ///< of the dump in progress
  std::vector<Event> journal_;     ///< in the order of events
  bool mixesProtocols_ = false;    ///< hops of different protocols were joined to one route
  std::unique_ptr<Update> update_; ///< what was brought in; null for nothing. It looks at `rows_`
};

} // namespace sources::kernel
