#include "command/StaticLineParser.h"

#include "scrivo/Shown.h"
#include "state/StaticLineWords.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <limits>

namespace command {

namespace {

using Routing::RouteType;

/// The words of a line with their places.
class LineWords {
 public:
  explicit LineWords(std::string_view line) : line_(line) { skipBlanks(); }

  bool atEnd() const { return at_ == line_.size(); }
  std::size_t column() const { return at_; }
  std::string_view peek() const { return line_.substr(at_, line_.find(' ', at_) - at_); }
  std::string_view take(const char* what) {
    if (atEnd()) fail(std::string("expected ") + what);
    const auto word = peek();
    at_ += word.size();
    skipBlanks();
    return word;
  }
  /// Takes the next word if it is this one.
  bool takeIf(std::string_view word) {
    if (atEnd() || peek() != word) return false;
    take("");
    return true;
  }
  void expect(std::string_view word) {
    if (!takeIf(word)) fail("expected " + std::string(word));
  }
  /// All that is left, blanks included.
  std::string_view takeRest() {
    const auto rest = line_.substr(at_);
    at_ = line_.size();
    return rest;
  }
  /// Leaves out the end of the line from `length` on, which may be the blank ahead of the next
  /// word.
  void cut(std::size_t length) {
    line_ = line_.substr(0, length);
    at_ = std::min(at_, length);
  }
  std::string_view line() const { return line_; }

  /// The error at the next word, or at `place`.
  [[noreturn]] void fail(const std::string& message) const { failAt(at_, message); }
  [[noreturn]] void failAt(std::size_t place, const std::string& message) const {
    const auto word = line_.substr(place, line_.find(' ', place) - place);
    throw LineError(word.empty() ? message + " here" : "\"" + std::string(word) + "\": " + message,
                    place);
  }
  /// The error at the first character of a name, which begins at `place`, that nobody can have
  /// typed.
  void requireShown(std::size_t place, std::string_view name) const {
    const auto hidden = scrivo::findHidden(name);
    if (hidden == std::string_view::npos) return;
    throw LineError("\"" + std::string(name) + "\": expected a name without control characters",
                    place + hidden);
  }

 private:
  void skipBlanks() {
    while (at_ < line_.size() && line_[at_] == ' ') ++at_;
  }

  std::string_view line_;
  std::size_t at_ = 0;
};

template <class Number>
std::optional<Number> parseNumber(std::string_view text, Number most) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number > most) return {};
  return number;
}

std::uint32_t takeNumber(LineWords& words, std::uint32_t most) {
  const auto place = words.column();
  const std::string expected = "expected a number from 0 to " + std::to_string(most);
  const auto number =
      parseNumber(words.take(("a number from 0 to " + std::to_string(most)).c_str()), most);
  if (!number) words.failAt(place, expected);
  return *number;
}

/// A value of the platform's from the next word.
template <class Value>
Value takeValue(LineWords& words, const char* what) {
  const auto place = words.column();
  const auto value = Value::parse(words.take(what));
  if (!value) words.failAt(place, std::string("expected ") + what);
  return *value;
}

Kesh::IpGenPrefix takePrefix(LineWords& words, bool ip6) {
  if (ip6) return takeValue<Kesh::Ip6Prefix>(words, "an IPv6 prefix without bits behind its mask");
  return takeValue<Kesh::Prefix>(words, "an IPv4 prefix without bits behind its mask");
}

void readInterface(LineWords& words, StaticLine& out) {
  if (!Routing::readsAsInterface(words.peek())) return;
  out.via.intfId = Kesh::IntfId(Lumo::String(words.take("an interface")));
}

void readHop(LineWords& words, StaticLine& out) {
  if (words.atEnd()) return;
  const auto hop = Kesh::IpGenAddr::parse(words.peek());
  if (!hop) return;
  out.hopColumn = words.column();
  if (hop->isAddrZero()) words.fail("a next hop is an address other than zero");
  words.take("a next hop");
  out.via.hop = *hop;
  if (!words.takeIf("label")) return;
  constexpr std::uint32_t mostLabel = 0xfffff;
  out.via.mplsLabel = Kesh::MplsLabel(takeNumber(words, mostLabel));
}

void readVtep(LineWords& words, StaticLine& out) {
  const auto place = words.column();
  if (!words.takeIf("vtep")) return;
  if (out.via.hop.af() != Kesh::AddressFamily::unset) {
    words.failAt(place, "a via has a next hop or a VXLAN endpoint, not both");
  }
  constexpr std::uint32_t mostVni = 0xffffff; // RFC 7348
  out.via.vtepAddr = takeValue<Kesh::IpGenAddr>(words, "the address of a VXLAN endpoint");
  words.expect("vni");
  out.via.vni = takeNumber(words, mostVni);
  words.expect("router-mac-address");
  out.via.routerMac = takeValue<Kesh::EthAddr>(words, "an Ethernet address");
}

void readPreference(LineWords& words, StaticLine& out) {
  constexpr std::uint32_t most = std::numeric_limits<std::uint8_t>::max();
  if (words.atEnd() || words.peek().find_first_not_of("0123456789") != std::string_view::npos) {
    return;
  }
  out.key.preference = static_cast<std::uint8_t>(takeNumber(words, most));
}

void readTag(LineWords& words, StaticLine& out) {
  if (words.takeIf("tag")) {
    out.tag = takeNumber(words, std::numeric_limits<std::uint32_t>::max());
  }
}

void readName(LineWords& words, StaticLine& out) {
  if (!words.takeIf("name")) return;
  const auto place = words.column();
  out.name = words.takeRest();
  words.requireShown(place, out.name);
}

/// Reads a leak from the end of the line and cuts it off, since a name ahead of it may be anything.
void readLeak(LineWords& words, StaticLine& out) {
  const auto leak = Routing::findLeak(words.line());
  if (leak == std::string_view::npos || leak + 1 < words.column()) return;
  out.leakVrf = Routing::leakedTo(words.line().substr(leak));
  words.cut(leak);
}

void readForward(LineWords& words, StaticLine& out) {
  readLeak(words, out);
  const auto place = words.column();
  readInterface(words, out);
  readHop(words, out);
  if (words.takeIf("track")) {
    words.expect("bfd");
    out.bfdTracked = true;
  }
  readVtep(words, out);
  if (out.via == Routing::Via()) words.failAt(place, "expected an interface or a next hop");
  readPreference(words, out);
  readTag(words, out);
  readName(words, out);
}

void readNexthopGroup(LineWords& words, StaticLine& out) {
  out.routeType = RouteType::nexthopGroup;
  const auto place = words.column();
  if (!Routing::beginsAttributes(words.peek())) {
    out.nexthopGroup = words.take("the name of a nexthop group");
  }
  words.requireShown(place, out.nexthopGroup);
  readPreference(words, out);
  readTag(words, out);
}

void readDrop(LineWords& words, StaticLine& out) {
  out.routeType = RouteType::drop;
  readPreference(words, out);
  readTag(words, out);
  readName(words, out);
}

[[noreturn]] void contradicts(const StaticLine& line, const std::string& what) {
  throw LineError("the route to " + line.key.prefix.stringValue().str() + " of preference " +
                      std::to_string(line.key.preference) + " " + what,
                  0);
}

/// What all lines of one route have in common.
void holdAgainst(const StaticLine& line, const Routing::Route& route) {
  if (route.routeType != line.routeType) contradicts(line, "is there as another kind of route");
  if (route.tag != line.tag) {
    contradicts(line, "is there with tag " + std::to_string(route.tag));
  }
  if (!(route.leakVrf == L3::VrfName(Lumo::String(line.leakVrf)))) {
    contradicts(line, "is there with another VRF to leak to");
  }
}

void enterVia(const StaticLine& line, Routing::Route& route) {
  route.via.insertOrAssign(line.via, true);
  if (line.bfdTracked) {
    route.bfdTracked.insertOrAssign(line.via, true);
  } else {
    route.bfdTracked.erase(line.via);
  }
  if (line.name.empty()) {
    route.viaNextHopName.erase(line.via);
  } else {
    route.viaNextHopName.insertOrAssign(line.via, Lumo::String(line.name));
  }
}

} // namespace

StaticLine parseStaticLine(std::string_view text) {
  const auto strange = text.find_first_of(std::string_view("\t\n\v\f\r\0", 6));
  if (strange != text.npos) {
    throw LineError("expected no white space but blanks, and no NUL", strange);
  }
  LineWords words(text);
  StaticLine out;
  out.ip6 = words.takeIf("ipv6");
  if (!out.ip6) words.expect("ip");
  words.expect("route");
  if (words.takeIf("vrf")) {
    out.vrfColumn = words.column();
    out.vrf = words.take("the name of a VRF");
  }
  out.key.prefix = takePrefix(words, out.ip6);
  if (words.takeIf(Routing::dropWord)) {
    readDrop(words, out);
  } else if (words.takeIf(Routing::nexthopGroupWord)) {
    readNexthopGroup(words, out);
  } else {
    readForward(words, out);
  }
  if (!words.atEnd()) words.fail("nothing is expected here");
  return out;
}

void enterStaticLine(const StaticLine& line, Routing::ConfigGen& config) {
  const auto* const present = config.route.find(line.key);
  const auto route = present ? *present : Lumo::newEntity<Routing::Route>(line.key);
  if (present) {
    holdAgainst(line, *route);
  } else {
    route->routeType = line.routeType;
    route->tag = line.tag;
    route->leakVrf = L3::VrfName(Lumo::String(line.leakVrf));
    config.route.insertOrAssign(line.key, route);
  }
  switch (line.routeType) {
  case RouteType::drop:
    route->dropNextHopName = line.name;
    break;
  case RouteType::nexthopGroup:
    route->nexthopGroupName = line.nexthopGroup;
    break;
  default:
    enterVia(line, *route);
  }
}

} // namespace command
