#include "command/grammar/Kind.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <type_traits>

namespace command::grammar {

namespace {

template <class Prefix>
using AddressOf = std::remove_cvref_t<decltype(Prefix().address())>;

bool looksLikeAddress(std::string_view word) { return word.find_first_of(".:/") != word.npos; }

template <class Prefix>
Reading readTarget(std::string_view word) {
  if (const auto address = AddressOf<Prefix>::parse(word)) {
    return {Target<Prefix>{Prefix(*address, Prefix::maxLength), false}, {}};
  }
  const auto typed = Kesh::AddrWithMask<AddressOf<Prefix>>::parse(word);
  if (!typed) return {};
  const Prefix prefix(typed->address(), typed->len());
  if (prefix.address() == typed->address()) return {Target<Prefix>{prefix, true}, {}};
  return {{},
          "\"" + std::string(word) + "\" has bits behind its mask: expected " +
              prefix.stringValue().str()};
}

Reading readEitherTarget(std::string_view word) {
  auto ip4 = readTarget<Kesh::Prefix>(word);
  const bool isIp4 = ip4.value || !ip4.wrong.empty();
  return isIp4 ? ip4 : readTarget<Kesh::Ip6Prefix>(word);
}

/// A value of the platform's.
template <class Type>
Reading readValue(std::string_view word) {
  if (const auto value = Type::parse(word)) return {*value, {}};
  return {};
}

Reading readAddressWithLength(std::string_view word) {
  const auto ip4 = readValue<Kesh::IpAddrWithMask>(word);
  return ip4.value ? ip4 : readValue<Kesh::Ip6AddrWithMask>(word);
}

/// 0 is the tag of a route without one, which no selection is for.
Reading readTag(std::string_view word) {
  std::uint32_t tag = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), tag);
  if (error != std::errc() || end != word.data() + word.size() || tag == 0) return {};
  return {tag, {}};
}

Reading readLogPlace(std::string_view word) {
  std::int64_t place = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), place);
  const bool isNumber = error == std::errc() && end == word.data() + word.size() && place >= 0;
  if (!isNumber && word != "now") return {};
  return {std::string(word), {}};
}

Reading readFile(std::string_view word) {
  if (word.empty() || word == "-") return {};
  return {std::string(word), {}};
}

constexpr Word everyVrf[] = {{"all", "every VRF"}};

constexpr Word tables[] = {{"route", "the routing table"}};

constexpr Word formats[] = {{"text", "lines for people"}, {"json", "a document for programs"}};

constexpr Word logPlaces[] = {{"now", "the changes from now on, without a listing first"}};
constexpr Word colours[] = {{"auto", "where a terminal shows it"},
                            {"always", "in a pipe and a file too"},
                            {"never", "none"}};

// Their values are the codes that the library filters by.
constexpr Word protocols[] = {
    {"aggregate", "aggregates of BGP, and summaries of OSPF", "A"},
    {"bgp", "BGP, from inside and outside of the AS", "B"},
    {"connected", "the networks of the device's own interfaces", "C"},
    {"dhcp", "default routes from DHCP", "DH"},
    {"dynamic", "routes of dynamic policies", "DP"},
    {"isis", "IS-IS, both levels", "I"},
    {"kernel", "routes of the kernel", "K"},
    {"martian", "martians, which only detail shows", "M"},
    {"ospf", "OSPF, all its kinds", "O"},
    {"ospf3", "OSPFv3", "O3"},
    {"rip", "RIP", "R"},
    {"static", "static routes, those through nexthop groups too", "S"},
    {"vcs", "the VXLAN control service", "V"},
};

/// IPv6 knows all of these words, so that none of its own is short for one that it lacks.
constexpr auto protocols6 = [] {
  std::array<Word, std::size(protocols)> words{};
  std::copy(std::begin(protocols), std::end(protocols), words.begin());
  for (Word& word : words) {
    if (word.text == "ospf") word.refusal = "ospf is a protocol of IPv4: no IPv6 route is of it";
    if (word.text == "vcs") word.refusal = "vcs is a protocol of IPv4: no IPv6 route is of it";
  }
  return words;
}();

constexpr KindRow rows[] = {
    {.kind = Kind::none},
    {.kind = Kind::vrf, .placeholder = "NAME", .expected = "the name of a VRF"},
    {.kind = Kind::vrfOrAll,
     .placeholder = "NAME|all",
     .expected = "the name of a VRF, or all",
     .words = everyVrf},
    {.kind = Kind::interface, .placeholder = "NAME", .expected = "the name of an interface"},
    {.kind = Kind::nexthopGroup, .placeholder = "NAME", .expected = "the name of a nexthop group"},
    {.kind = Kind::type, .placeholder = "NAME", .expected = "the name of a type"},
    {.kind = Kind::ip4Target,
     .placeholder = "ADDRESS | PREFIX",
     .expected = "an IPv4 address or prefix",
     .wrong = "is no IPv4 address or prefix",
     .read = readTarget<Kesh::Prefix>,
     .looksLike = looksLikeAddress},
    {.kind = Kind::ip6Target,
     .placeholder = "ADDRESS | PREFIX",
     .expected = "an IPv6 address or prefix",
     .wrong = "is no IPv6 address or prefix",
     .read = readTarget<Kesh::Ip6Prefix>,
     .looksLike = looksLikeAddress},
    {.kind = Kind::target,
     .placeholder = "ADDRESS | PREFIX",
     .expected = "an IPv4 or IPv6 address or prefix",
     .wrong = "is no IPv4 or IPv6 address or prefix",
     .read = readEitherTarget,
     .looksLike = looksLikeAddress},
    {.kind = Kind::address,
     .placeholder = "ADDRESS",
     .expected = "an IPv4 or IPv6 address",
     .wrong = "is no IPv4 or IPv6 address",
     .read = readValue<Kesh::IpGenAddr>},
    {.kind = Kind::addressWithLength,
     .placeholder = "ADDRESS/LENGTH",
     .expected = "an address with its mask length, as in 10.0.0.1/24",
     .wrong = "is no address with a mask length, as in 10.0.0.1/24",
     .read = readAddressWithLength},
    {.kind = Kind::routeDistinguisher,
     .placeholder = "RD",
     .expected = "a route distinguisher, ASN:N or A.B.C.D:N",
     .wrong = "is no route distinguisher: expected ASN:N or A.B.C.D:N",
     .read = readValue<Kesh::RouteDistinguisher>},
    {.kind = Kind::protocol,
     .placeholder = "PROTOCOL",
     .expected = "a protocol",
     .words = protocols,
     .closed = true},
    {.kind = Kind::protocol6,
     .placeholder = "PROTOCOL",
     .expected = "a protocol",
     .words = protocols6,
     .closed = true},
    {.kind = Kind::table,
     .placeholder = "route",
     .expected = "a table",
     .wrong = "is no table: expected route",
     .words = tables,
     .closed = true},
    {.kind = Kind::tag,
     .placeholder = "N",
     .expected = "a tag, 1 to 4294967295",
     .wrong = "is no tag: expected 1 to 4294967295",
     .read = readTag},
    {.kind = Kind::command, .placeholder = "COMMAND...", .expected = "a command"},
    {.kind = Kind::inputFile,
     .placeholder = "FILE",
     .expected = "the name of a file, or - for standard input"},
    {.kind = Kind::outputFile,
     .placeholder = "FILE",
     .expected = "the name of a file, or - for standard output"},
    {.kind = Kind::file, .placeholder = "FILE", .expected = "the name of a file", .read = readFile},
    {.kind = Kind::source, .placeholder = "SOURCE", .expected = "a source of the state"},
    {.kind = Kind::format,
     .placeholder = "text|json",
     .expected = "text or json",
     .words = formats,
     .closed = true},
    {.kind = Kind::fields,
     .placeholder = "FIELD,...",
     .expected = "names of fields, as in metric,hardware"},
    {.kind = Kind::logPlace,
     .placeholder = "now|N",
     .expected = "now, or the number of a change",
     .read = readLogPlace,
     .words = logPlaces},
    {.kind = Kind::colour,
     .placeholder = "auto|always|never",
     .expected = "auto, always or never",
     .words = colours,
     .closed = true},
    {.kind = Kind::text, .placeholder = "TEXT", .expected = "a text"},
    {.kind = Kind::expression,
     .placeholder = "EXPRESSION...",
     .expected = "an expression, as in vias >= 2",
     .takesRest = true},
};

static_assert(
    [] {
      for (std::size_t i = 0; i < std::size(rows); ++i) {
        if (rows[i].kind != static_cast<Kind>(i)) return false;
      }
      return true;
    }(),
    "the rows are in the order of the kinds");

Reading readWord(std::span<const Word> words, std::string_view text) {
  for (const Word& word : words) {
    if (word.text == text && word.refusal.empty()) return {word.meaning(), {}};
  }
  return {};
}

} // namespace

const KindRow& rowOf(Kind kind) { return rows[static_cast<std::size_t>(kind)]; }

std::string wrongText(Kind kind, std::string_view word) {
  return "\"" + std::string(word) + "\" " + std::string(rowOf(kind).wrong);
}

Reading read(Kind kind, std::string_view word) {
  const KindRow& row = rowOf(kind);
  if (!row.read && !row.closed) return {std::string(word), {}};
  Reading reading = row.closed ? readWord(row.words, word) : row.read(word);
  if (!reading.value && reading.wrong.empty()) reading.wrong = wrongText(kind, word);
  return reading;
}

std::string expectedText(Kind kind) {
  const KindRow& row = rowOf(kind);
  std::string text(row.expected);
  if (!row.closed) return text;
  std::string_view join = " (";
  for (const Word& word : row.words) {
    if (!word.refusal.empty()) continue;
    text.append(join).append(word.text);
    join = " ";
  }
  return text + ")";
}

} // namespace command::grammar
