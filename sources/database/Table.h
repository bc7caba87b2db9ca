// A shared table in a database, behind the seam of the read views. A walk reads some records at a
// time, so that no statement is under way between two steps.
#pragma once

#include "sources/database/Texts.h"
#include "sources/database/Window.h"
#include "vanta/MemoryTable.h"

namespace sources::database {

template <class Rows>
class Table final : public Vanta::VantaBase<typename Rows::Key, typename Rows::Value> {
 public:
  using Key = typename Rows::Key;
  using Value = typename Rows::Value;
  using IterHint = Vanta::IterHint;

  Table(std::shared_ptr<Session> session, Rows rows)
      : session_(std::move(session)),
        rows_(std::move(rows)),
        path_(session_->connection().path(), rows_.table) {}

  int initialize() override { return 1; }
  void detach() override { forget(); }

  const Value* lookup(const Key& key, bool& found, IterHint hint) const override {
    ++counters_.lookups;
    const auto epoch = session_->refresh();
    if (readsAll()) return all_->lookup(key, found, hint);
    if (const auto known = window_.find(key, epoch)) {
      found = *known != nullptr;
      return found ? *known : &absent_;
    }
    if constexpr (Rows::inKeyOrder && !Rows::readsAllForMany) readNear(key, epoch);
    found = guarded([&] { return shownKey(key); },
                    [&] {
                      Statement& statement = prepared(equal_, Where::equal);
                      const Run run(statement);
                      bindScope(statement);
                      Rows::bindKey(statement, key);
                      if (!statement.step()) return false;
                      readRecord(statement, found_);
                      return true;
                    });
    return found ? &found_ : &absent_;
  }

  bool first(Value* value, IterHint& hint) const override {
    ++counters_.steps;
    readAhead(nullptr, firstRecords);
    return give(0, value, hint);
  }

  bool next(const Key& key, Value* value, IterHint& hint) const override {
    ++counters_.steps;
    const std::size_t place = hint;
    if (place < ahead_.size() && ahead_[place].key == key) {
      if (place + 1 < ahead_.size()) return give(place + 1, value, hint);
      if (atEnd_) return false;
    }
    readAhead(&key, std::clamp(2 * ahead_.size(), firstRecords, mostRecords));
    return give(0, value, hint);
  }

  bool inKeyOrder() const override { return Rows::inKeyOrder; }
  std::size_t members() const override {
    session_->refresh();
    return guarded(anywhere, [&] {
      if (!count_) count_.emplace(session_->connection(), texts().count());
      const Run run(*count_);
      bindScope(*count_);
      return count_->step() ? static_cast<std::size_t>(count_->integer("count")) : 0;
    });
  }
  std::size_t minSize() const override { return 0; }
  std::size_t maxSize() const override { return SIZE_MAX; }
  std::size_t capacity() const override { return members(); }
  int type() const override { return 1; }
  Vanta::ReaderCounters readerCounters() const override { return counters_; }
  Vanta::RootPath rootPath() const override { return path_; }
  int mountStatus() const override { return 1; }

 private:
  /// The first step of a walk may be all that is wanted; a walk that goes on reads more at a time,
  /// as long as it is no more than a processor's nearest memory holds.
  static constexpr std::size_t firstRecords = 4;
  static constexpr std::size_t mostRecords = sizeof(Value) > 1024 ? 8 : 256;

  /// So many look-ups cost less than counting the members to know how many are many.
  static constexpr std::size_t fewLookups = 256;

  Texts<Rows> texts() const { return Texts<Rows>(rows_); }
  Statement& prepared(std::optional<Statement>& statement, Where where) const {
    if (!statement) statement.emplace(session_->connection(), texts().select(where));
    return *statement;
  }
  void bindScope(Statement& statement) const {
    if (rows_.vrf) statement.bind(*rows_.vrf);
  }

  /// Does a read; what it finds to be wrong is a corruption of this table, where `place` tells, the
  /// text of which costs more than most reads.
  template <class Place, class Read>
  auto guarded(Place&& place, Read&& read) const {
    try {
      return read();
    } catch (const WrongColumn& wrong) {
      failCorrupt(place(), wrong.what());
    } catch (const SqliteError& error) {
      failCorrupt(place(), error.reason());
    }
  }
  static std::string anywhere() { return {}; }
  [[noreturn]] void failCorrupt(const std::string& place, const std::string& what) const {
    throw Tembra::CorruptionDetectedException(rows_.table + (place.empty() ? "" : " " + place) +
                                              ": " + what);
  }

  /// Reads a record from the row on which the statement stands, which then stands behind it; false
  /// at the end.
  bool readRecord(Statement& row, Value& value) const {
    Rows::readKey(row, value.key, *session_);
    Rows::readValues(row, value, *session_);
    bool more = row.step();
    if constexpr (Rows::manyRows) {
      Key key{};
      for (; more; more = row.step()) {
        Rows::readKey(row, key, *session_);
        if (!(key == value.key)) {
          row.rewind();
          break;
        }
        Rows::readMore(row, value, *session_);
      }
    }
    return more;
  }

  /// Calls `take` with the records behind `after`, or from the first, until it returns false.
  template <class Take>
  bool readBehind(const Key* after, Take&& take) const {
    Statement& statement = after ? prepared(behind_, Where::behind) : prepared(every_, Where::all);
    const Run run(statement);
    bindScope(statement);
    if (after) Rows::bindKey(statement, *after);
    bool more = statement.step();
    while (more) {
      more = readRecord(statement, found_);
      if (after && !Rows::before(*after, found_.key)) {
        throw WrongColumn("found a row that is not behind the one ahead of it");
      }
      last_ = found_.key;
      after = &last_;
      if (!take(found_)) return true;
    }
    return false;
  }

  void readAhead(const Key* key, std::size_t count) const {
    session_->refresh();
    std::optional<Key> after;
    if (key) after = *key; // it may be one of those that are read over
    const auto place = [&] { return after ? "behind " + shownKey(*after) : std::string(); };
    const auto read = [&] {
      return !readBehind(after ? &*after : nullptr, [&](const Value& value) {
        ahead_.push_back(value);
        return ahead_.size() < count;
      });
    };
    ahead_.clear();
    atEnd_ = false;
    try {
      atEnd_ = guarded(place, read);
    } catch (const Tembra::CorruptionDetectedException&) {
      if (ahead_.empty()) throw; // else the walk meets it where it stands
    }
  }

  /// Reads what is behind a key into the window, when it seems that it will be asked for.
  void readNear(const Key& key, std::uint64_t epoch) const {
    const std::size_t count = window_.wanted(key);
    if (count == 0) return;
    auto& records = window_.restart(key);
    const auto place = [&] { return "behind " + shownKey(key); };
    window_.finish(!guarded(place,
                            [&] {
                              return readBehind(&key, [&](const Value& value) {
                                records.push_back(value);
                                return records.size() < count;
                              });
                            }),
                   epoch);
  }

  bool give(std::size_t place, Value* value, IterHint& hint) const {
    if (place >= ahead_.size()) return false;
    if (value) *value = ahead_[place];
    hint = place;
    return true;
  }

  /// Whether look-ups go to a copy of the whole table, which a walk reads at once when there are
  /// many of them while one state is held.
  bool readsAll() const {
    if constexpr (!Rows::readsAllForMany) {
      return false;
    } else {
      if (!session_->isHeld()) return false;
      if (epoch_ != session_->epoch()) {
        epoch_ = session_->epoch();
        lookups_ = 0;
        many_ = fewLookups;
        all_.reset();
      }
      if (all_) return true;
      if (++lookups_ <= many_) return false;
      // A step of a walk costs about a quarter of a look-up.
      if (many_ == fewLookups) many_ = std::max(many_ + 1, members() / 4);
      if (lookups_ <= many_) return false;
      auto all = std::make_unique<Vanta::MemoryTable<Key, Value>>(rows_.table);
      guarded(anywhere, [&] {
        return readBehind(nullptr, [&](const Value& value) {
          all->insert(value);
          return true;
        });
      });
      all_ = std::move(all);
      return true;
    }
  }

  void forget() const {
    ahead_ = {};
    window_ = {};
    all_.reset();
  }

  std::shared_ptr<Session> session_;
  Rows rows_;
  Vanta::RootPath path_;
  Value absent_{};
  mutable std::optional<Statement> equal_, behind_, every_, count_;
  mutable Value found_{};
  mutable Key last_{};
  mutable std::vector<Value> ahead_; ///< the records that the walk has next
  mutable bool atEnd_ = false;       ///< nothing is behind those
  mutable Window<Rows> window_;
  mutable std::unique_ptr<Vanta::MemoryTable<Key, Value>> all_;
  mutable std::uint64_t epoch_ = 0;
  mutable std::size_t lookups_ = 0, many_ = 0;
  mutable Vanta::ReaderCounters counters_;
};

} // namespace sources::database
