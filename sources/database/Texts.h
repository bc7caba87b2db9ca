// The statements of a table, made from its description.
#pragma once

#include "sources/database/Rows.h"

namespace sources::database {

/// "PREFIXa, PREFIXb".
std::string listOf(const Names& names, const std::string& prefix = {});

/// What a statement compares the key's columns with: all of them equal to parameters, or behind
/// them in their order.
enum class Where { all, equal, behind };

/// The statements of one table. Parameters: the VRF for a table that all VRFs share, then the key.
template <class Rows>
class Texts {
 public:
  explicit Texts(const Rows& rows) : rows_(rows) {}

  /// Reads records in the order of their keys.
  std::string select(Where where) const {
    Names columns = Rows::keys();
    const Names values = Rows::values();
    columns.insert(columns.end(), values.begin(), values.end());
    std::string text = "select " + listOf(columns, "r.");
    if constexpr (Rows::manyRows) text += ", " + listOf(Rows::viaValues(), "v.");
    text += " from " + rows_.table + " r";
    if constexpr (Rows::manyRows) text += " left join " + rows_.viaTable() + " v on v.fec = r.id";
    text += condition(where) + " order by " + listOf(Rows::keys(), "r.");
    if constexpr (Rows::manyRows) text += ", v.place";
    return text;
  }
  std::string count() const {
    return "select count(*) from " + rows_.table + " r" + condition(Where::all);
  }
  /// Takes the VRF, the key, the values, and what is there for people.
  std::string insert() const {
    Names columns = Rows::keys();
    if (rows_.vrf) columns.insert(columns.begin(), "vrf");
    for (const Names& more : {Rows::values(), Rows::extras()}) {
      columns.insert(columns.end(), more.begin(), more.end());
    }
    return insertInto(rows_.table, columns);
  }
  std::string remove() const {
    std::string text = "delete from " + rows_.table + " as r" + condition(Where::equal);
    return text;
  }
  static std::string insertInto(const std::string& table, const Names& columns) {
    std::string marks;
    for (std::size_t i = 0; i < columns.size(); ++i) marks += i == 0 ? "?" : ", ?";
    return "insert or replace into " + table + " (" + listOf(columns) + ") values (" + marks + ")";
  }

 private:
  std::string condition(Where where) const {
    std::string text = rows_.vrf ? " where r.vrf = ?" : "";
    if (where == Where::all) return text;
    text += text.empty() ? " where (" : " and (";
    std::string marks;
    for (std::size_t i = 0; i < Rows::keys().size(); ++i) marks += i == 0 ? "?" : ", ?";
    return text + listOf(Rows::keys(), "r.") + (where == Where::equal ? ") = (" : ") > (") + marks +
           ")";
  }

  const Rows& rows_;
};

} // namespace sources::database
