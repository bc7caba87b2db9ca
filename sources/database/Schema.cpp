#include "sources/database/Schema.h"

#include "state/RouteTypeNames.h"

#include <algorithm>
#include <initializer_list>
#include <set>
#include <vector>

namespace sources::database {

namespace {

/// "rova" in the header of the file.
constexpr std::int64_t applicationId = 0x726f7661;

/// The tables and views that do not speak of a family.
constexpr const char* common[] = {
    "CREATE TABLE meta(key text primary key, value) without rowid",
    "CREATE TABLE vrf(id integer primary key, place integer not null, name text not null, "
    "plain integer not null)",
    "CREATE TABLE hidden_routes(vrf integer, family integer, routes integer not null, "
    "primary key(vrf, family)) without rowid",
    "CREATE TABLE interface(id integer primary key, name text not null)",
    "CREATE TABLE route_type(family integer, number integer, name text not null, "
    "primary key(family, number)) without rowid",
    "CREATE TABLE nexthop_group(name text primary key, id integer not null) without rowid",
    "CREATE TABLE counter_key(nexthop_group integer, entry integer, first_half integer not null, "
    "counter integer not null, primary key(nexthop_group, entry)) without rowid",
    "CREATE TABLE counter(id integer primary key, packets integer not null, "
    "bytes integer not null)",
    "CREATE TABLE counter_snapshot(id integer primary key, packets integer not null, "
    "bytes integer not null)",
    "CREATE TABLE change_log(seq integer primary key, time integer not null, what integer, "
    "fec integer, name text, family integer, vrf integer, keys blob)",
    "CREATE TABLE section(name text primary key, json text not null) without rowid",
    "CREATE TABLE route_list(vrf integer, family integer, agent text, routing integer, "
    "primary key(vrf, family, agent)) without rowid",
    "CREATE TABLE static_route(vrf integer, family integer, agent text, prefix text, "
    "preference integer, json text not null, listed integer not null, "
    "primary key(vrf, family, agent, prefix, preference)) without rowid",
    "CREATE INDEX listed_static_route on static_route(vrf, family, agent) where listed = 1",
};

/// Those of FECs, # for the name of the table and @ for the type of an address.
constexpr const char* ofFecs[] = {
    "CREATE TABLE #(id integer primary key, backup integer not null)",
    "CREATE TABLE #_via(fec integer, place integer, hop @ not null, interface integer, "
    "label integer, label_action integer not null, weight integer not null, "
    "primary key(fec, place)) without rowid",
};

/// Those of a family, # for its digit and @ for the type of an address as a key.
constexpr const char* ofFamily[] = {
    "CREATE TABLE route#(vrf integer, last @, rest integer, fec integer not null, "
    "type integer not null, preference integer not null, metric integer not null, "
    "source_vrf integer, since integer not null, prefix text, "
    "primary key(vrf, last, rest)) without rowid",
    "CREATE TABLE unprogrammed#(last @, rest integer, vrf integer, "
    "primary key(last, rest, vrf)) without rowid",
    "CREATE TABLE unprogrammed_count#(vrf integer primary key, routes integer not null)",
    "CREATE TABLE kernel_error#(vrf integer, last @, rest integer, interface integer, "
    "error integer not null, primary key(vrf, last, rest)) without rowid",
    "CREATE TABLE neighbour#(vrf integer, interface integer, address text, mac text not null, "
    "primary key(vrf, interface, address)) without rowid",
};

/// What a person asks for of a family, names in the place of numbers: @ is the beginning of the
/// view's name, # the family's digit, $ the text of an address of a via, % that of a route's
/// prefix.
constexpr const char* fecView = R"(CREATE VIEW @_fec AS
select fec, place, $ as nexthop,
  (select name from interface where id = via.interface) as interface, label, weight
from fec#_via as via)";
constexpr const char* routeView = R"(CREATE VIEW @_route AS
select (select name from vrf where id = route.vrf) as vrf, % as prefix,
  (select name from route_type where family = # and number = type) as type,
  preference, metric,
  (select group_concat(nexthop, ' ') from any_fec where fec = route.fec) as nexthops,
  (select group_concat(interface, ' ') from any_fec where fec = route.fec) as interfaces,
  not exists (select 1 from unprogrammed# as lacks where lacks.last = route.last
    and lacks.rest = route.rest and lacks.vrf = route.vrf) as hardware,
  fec, datetime(since / 1000, 'unixepoch') as since, since as since_ms
from route# as route)";

/// What the views of a family differ in. SQL can write an IPv4 address; an IPv6 one stands there.
struct FamilyViews {
  const char* name;
  const char* digit;
  const char* hop;
  const char* prefix;
};
constexpr FamilyViews familyViews[] = {
    {"ip", "4", "printf('%d.%d.%d.%d', hop >> 24, hop >> 16 & 255, hop >> 8 & 255, hop & 255)",
     "printf('%d.%d.%d.%d/%d', last >> rest << rest >> 24, last >> rest << rest >> 16 & 255, "
     "last >> rest << rest >> 8 & 255, last >> rest << rest & 255, 32 - rest)"},
    {"ipv6", "6", "hop", "prefix"},
};

/// The views of both families. A route of one may lead to a next hop of the other.
constexpr const char* sharedViews[] = {
    R"(CREATE VIEW any_fec AS
select * from ip_fec union all select * from ipv6_fec)",
    R"(CREATE VIEW neighbour AS
select (select name from vrf where id = entry.vrf) as vrf,
  (select name from interface where id = entry.interface) as interface, address, mac
from (select * from neighbour4 union all select * from neighbour6) as entry)",
    // A row may have the keys of hundreds of routes: see ChangeLog.cpp.
    R"(CREATE VIEW change AS
with recursive place(i) as (select 0 union all select i + 1 from place where i < 400),
row as (select *, case family when 4 then 6 when 6 then 18 end as size from change_log),
entry as (
  select seq, time, what, fec, name, family, vrf, null as key from row where size is null
  union all
  select seq - length(keys) / size + 1 + i, time,
    cast(hex(substr(keys, i * size + 1, 1)) as integer), fec, name, family, vrf,
    hex(substr(keys, i * size + 2, size - 1))
  from row join place on i < length(keys) / size)
select seq, datetime(time / 1000, 'unixepoch') as time, time as time_ms,
  case what when 1 then 'entered' when 2 then 'replaced' when 3 then 'removed'
    when 4 then 'other' else 'everything' end as what,
  (select name from vrf where id = entry.vrf) as vrf,
  case family when 4 then @ when 6 then # end as prefix, fec, name
from entry)",
};

/// The text with words in the place of marks, which the words may have again.
std::string filled(std::string_view text,
                   std::initializer_list<std::pair<char, std::string_view>> words) {
  std::string out;
  for (const char c : text) {
    const auto* const word = std::ranges::find(words, c, &std::pair<char, std::string_view>::first);
    word == words.end() ? out += c : out += word->second;
  }
  return out;
}

/// The byte at a place of a key, which is a text of hexadecimal digits, as a number.
std::string byteAt(int place) {
  const auto digit = [](int at) {
    return "instr('123456789ABCDEF', substr(key, " + std::to_string(at) + ", 1))";
  };
  return "(" + digit(2 * place + 1) + " * 16 + " + digit(2 * place + 2) + ")";
}

/// The prefix of a key: its length, then its address.
std::string ip4KeyText() {
  std::string text = byteAt(1);
  for (int place = 2; place <= 4; ++place) text += " || '.' || " + byteAt(place);
  return text + " || '/' || " + byteAt(0);
}

std::string ip6KeyText() {
  std::string text;
  for (int place = 1; place < 17; place += 2) {
    text += (place == 1 ? "lower(substr(key, " : " || ':' || lower(substr(key, ") +
            std::to_string(2 * place + 1) + ", 4))";
  }
  return text + " || '/' || " + byteAt(0);
}

std::vector<std::string> statements() {
  std::vector<std::string> all(std::begin(common), std::end(common));
  for (const auto& [table, type] : {std::pair("fec4", "integer"), std::pair("fec6", "text"),
                                    std::pair("policy_fec", "integer")}) {
    for (const char* const one : ofFecs) all.push_back(filled(one, {{'#', table}, {'@', type}}));
  }
  for (const auto& [digit, type] : {std::pair("4", "integer"), std::pair("6", "blob")}) {
    for (const char* const one : ofFamily) all.push_back(filled(one, {{'#', digit}, {'@', type}}));
  }
  for (const char* const view : {fecView, routeView}) {
    for (const auto& [name, digit, hop, prefix] : familyViews) {
      all.push_back(filled(view, {{'@', name}, {'#', digit}, {'$', hop}, {'%', prefix}}));
    }
  }
  for (const char* const view : sharedViews) {
    all.push_back(filled(view, {{'@', ip4KeyText()}, {'#', ip6KeyText()}}));
  }
  return all;
}

template <class Rows>
void enterRouteTypes(Connection& connection, std::int64_t family, const Rows& rows) {
  Statement insert(connection, "insert into route_type values (?, ?, ?)");
  for (const auto& [type, name] : rows) {
    insert.bind(family).bind(static_cast<std::int64_t>(type)).bindText(name);
    insert.run();
  }
}

std::string versionMessage(const Connection& connection, std::int64_t version) {
  const std::string remedy = version < schemaVersion
                                 ? "restart rova-agent, which starts the file anew"
                                 : "update rova, or restart it if it was updated";
  return connection.path() + ": written by version " + std::to_string(version) +
         " of the state database, and this program reads version " + std::to_string(schemaVersion) +
         ": " + remedy;
}

/// The texts of all that stands in the file. An index that a key makes by itself has none.
std::set<std::string> textsOf(Connection& connection) {
  std::set<std::string> texts;
  Statement select(connection, "select sql from sqlite_schema where sql is not null");
  while (select.step()) texts.emplace(select.text("sql"));
  return texts;
}

bool hasOwnTables(Connection& connection) {
  const auto texts = textsOf(connection);
  const auto own = statements();
  if (texts.size() != own.size()) return false;
  return std::ranges::all_of(own, [&](const auto& text) { return texts.contains(text); });
}

} // namespace

void makeSchema(Connection& connection) {
  connection.execute("begin immediate");
  for (const auto& statement : statements()) connection.execute(statement);
  enterRouteTypes(connection, 4, state::routeTypeNames);
  enterRouteTypes(connection, 6, state::route6TypeNames);
  connection.execute("pragma application_id = " + std::to_string(applicationId) +
                     "; pragma user_version = " + std::to_string(schemaVersion) + "; commit");
}

void requireOwn(Connection& connection) {
  if (connection.number("pragma application_id") == applicationId) return;
  throw SourceError(connection.path() + ": found another database, expected one of rova-agent");
}

bool hasSchema(Connection& connection) {
  return connection.number("pragma application_id") == applicationId &&
         connection.number("pragma user_version") == schemaVersion && hasOwnTables(connection);
}

void requireSchema(Connection& connection) {
  requireOwn(connection);
  const auto version = connection.number("pragma user_version");
  if (version != schemaVersion) throw SourceError(versionMessage(connection, version));
  if (!hasOwnTables(connection)) {
    throw SourceError(connection.path() + ": damaged: its tables are not those of version " +
                      std::to_string(version));
  }
}

} // namespace sources::database
