#include "command/RouteQuery.h"

#include <array>
#include <type_traits>

namespace command {

namespace {

struct Protocol {
  std::string_view word;
  std::string_view code;
  bool inIp6 = true; ///< no IPv6 route has the code of one that is not
};
constexpr Protocol protocols[] = {
    {"aggregate", "A"},   {"bgp", "B"},    {"connected", "C"}, {"dhcp", "DH"},
    {"dynamic", "DP"},    {"isis", "I"},   {"kernel", "K"},    {"martian", "M"},
    {"ospf", "O", false}, {"ospf3", "O3"}, {"rip", "R"},       {"static", "S"},
    {"vcs", "V", false},
};

/// The keywords that are no protocols; the protocols stand behind them in one list, so that an
/// abbreviation is unambiguous among all.
enum Keyword { detail, host, interface, longerPrefixes, summary, vrf, firstProtocol };

constexpr auto keywords = [] {
  std::array<std::string_view, firstProtocol + std::size(protocols)> list{
      "detail", "host", "interface", "longer-prefixes", "summary", "vrf"};
  for (std::size_t i = 0; i < std::size(protocols); ++i)
    list[firstProtocol + i] = protocols[i].word;
  return list;
}();

bool looksLikeAddress(std::string_view word) { return word.find_first_of(".:/") != word.npos; }

template <class Prefix>
using AddressOf = std::remove_cvref_t<decltype(Prefix().address())>;

template <class Prefix>
constexpr bool isIp6 = std::is_same_v<Prefix, Kesh::Ip6Prefix>;

template <class Prefix>
constexpr const char* familyName = isIp6<Prefix> ? "IPv6" : "IPv4";

/// Parses one query; each part reports when it stands twice.
template <class Prefix>
class QueryParser {
 public:
  explicit QueryParser(Words& words) : words_(words) {}

  RouteQuery<Prefix> parse() {
    while (!words_.atEnd()) {
      looksLikeAddress(words_.peek()) ? readPrefix() : readKeyword();
    }
    if (query_.longerPrefixes && query_.prefix.isNullPrefix()) {
      words_.fail("longer-prefixes needs a prefix ahead of it, as in 10.0.0.0/8 longer-prefixes");
    }
    return query_;
  }

 private:
  void once(bool& seen) {
    if (seen) words_.failAtLast("this part of the query stands twice");
    seen = true;
  }

  /// Reports a word that does not go with an earlier one: the host table is shown as a whole and a
  /// summary counts the whole table, so that of the other parts they have the VRF alone.
  void narrows() {
    narrowed_ = true;
    refuseNarrowed();
  }
  void refuseNarrowed() {
    if (query_.host && query_.summary) words_.failAtLast("host and summary are two displays");
    if (!narrowed_) return;
    if (query_.host) {
      words_.failAtLast("host goes with vrf alone: the host route table is shown as a whole");
    }
    if (query_.summary) {
      words_.failAtLast("summary goes with vrf alone: it counts the whole table");
    }
  }

  void readPrefix() {
    const auto word = words_.take("a prefix");
    narrows();
    once(hasPrefix_);
    if (const auto address = AddressOf<Prefix>::parse(word)) {
      query_.prefix = Prefix(*address, Prefix::maxLength);
      return;
    }
    const auto typed = Kesh::AddrWithMask<AddressOf<Prefix>>::parse(word);
    if (!typed) {
      words_.failAtLast("\"" + std::string(word) + "\" is no " + familyName<Prefix> +
                        " address or prefix");
    }
    query_.prefix = Prefix(typed->address(), typed->len());
    query_.typedMask = true;
    if (query_.prefix.address() != typed->address()) {
      words_.failAtLast("\"" + std::string(word) + "\" has bits behind its mask: expected " +
                        query_.prefix.stringValue().str());
    }
  }

  void readKeyword() {
    const int keyword = words_.takeKeyword(keywords);
    if (keyword < 0) failUnknown();
    if (keyword != host && keyword != summary && keyword != vrf) narrows();
    switch (keyword) {
    case detail:
      once(query_.detail);
      break;
    case host:
      once(query_.host);
      refuseNarrowed();
      break;
    case interface:
      if (query_.interface) words_.failAtLast("this part of the query stands twice");
      query_.interface = words_.take("the name of an interface");
      break;
    case longerPrefixes:
      once(query_.longerPrefixes);
      break;
    case summary:
      once(query_.summary);
      refuseNarrowed();
      break;
    case vrf:
      once(hasVrf_);
      query_.vrf = words_.take("the name of a VRF, or all");
      break;
    default:
      readProtocol(protocols[static_cast<std::size_t>(keyword) - firstProtocol]);
    }
  }

  /// A protocol of the other family would select nothing. Its word stands in the list of this one
  /// all the same, so that it is no abbreviation of another.
  void readProtocol(const Protocol& protocol) {
    once(hasProtocol_);
    if (isIp6<Prefix> && !protocol.inIp6) {
      words_.failAtLast(std::string(protocol.word) +
                        " is a protocol of IPv4: no IPv6 route is of it");
    }
    query_.protocol = protocol.code;
  }

  [[noreturn]] void failUnknown() {
    words_.fail("\"" + std::string(words_.peek()) + "\" is not understood: expected an " +
                familyName<Prefix> +
                " address or prefix, vrf, host, summary, longer-prefixes, detail, interface, " +
                "or a protocol (" + protocolWordList(isIp6<Prefix>) + ")");
  }

  Words& words_;
  RouteQuery<Prefix> query_;
  bool hasPrefix_ = false;
  bool hasVrf_ = false;
  bool hasProtocol_ = false;
  bool narrowed_ = false; ///< has a part that selects among the routes, or shows more of them
};

} // namespace

template <class Prefix>
RouteQuery<Prefix> parseRouteQuery(Words& words) {
  return QueryParser<Prefix>(words).parse();
}
template RouteQuery<Kesh::Prefix> parseRouteQuery(Words&);
template RouteQuery<Kesh::Ip6Prefix> parseRouteQuery(Words&);

std::string protocolWordList(bool ip6) {
  std::string list;
  for (const Protocol& protocol : protocols) {
    if (ip6 && !protocol.inIp6) continue;
    list += (list.empty() ? "" : " ") + std::string(protocol.word);
  }
  return list;
}

} // namespace command
