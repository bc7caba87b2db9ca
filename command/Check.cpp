#include "command/Check.h"

#include "command/OpenState.h"
#include "command/OwnAddress.h"
#include "command/VrfChoice.h"
#include "rova/CliSupport.h"
#include "scrivo/Printer.h"
#include "sources/Source.h"

#include <optional>
#include <unistd.h>

namespace command {

namespace {

/// What the names of management interfaces begin with.
constexpr const char* managementPrefix = "Management";

/// A verdict: the reason for a refusal, or none.
using Refusal = std::optional<std::string>;

ExitStatus printVerdict(const Refusal& refusal, const sources::Notes& notes,
                        const Options& options) {
  scrivo::Printer printer(STDOUT_FILENO, options.format);
  scrivo::BoolAttrInfo acceptable(printer, "acceptable");
  scrivo::StringAttrInfo message(printer, "message");
  printer.start();
  printNotes(printer, notes);
  acceptable.setValue(!refusal);
  printer.addAttributes("", 1, acceptable.getArg());
  if (refusal) {
    message.setValue(*refusal);
    printer.addAttributes("refused: %s\n", 1, message.getArg());
  } else {
    printer.addFrills("acceptable\n");
  }
  printer.end();
  printer.close();
  return refusal ? failure : success;
}

/// The addresses and VRFs of the state: a check looks at no routes.
sources::State openForCheck(const Options& options, const std::string& vrf) {
  sources::Needs needs;
  needs.routes = needs.neighbours = needs.nexthopGroups = false;
  needs.vrf = vrf;
  return openState(options, needs);
}

/// A kernel knows no route distinguishers. A check against nothing would accept anything.
void refuseKernel(const Options& options) {
  if (!sources::isKernel(options.state)) return;
  throw sources::SourceError(options.state + ": has no route distinguishers to check against; " +
                             "--state names the file of a snapshot");
}

struct AddressQuery {
  std::optional<Kesh::IpAddrWithMask> ip4;
  std::optional<Kesh::Ip6AddrWithMask> ip6; ///< where it is not IPv4
  Lumo::String interface;
  bool secondary = false;
  bool replace = false;
};

void takeAddressWithMask(Words& words, AddressQuery& query) {
  const auto word = words.take("an address with its mask length, as in 10.0.0.1/24");
  query.ip4 = Kesh::IpAddrWithMask::parse(word);
  query.ip6 = Kesh::Ip6AddrWithMask::parse(word);
  if (query.ip4 || query.ip6) return;
  words.failAtLast("\"" + std::string(word) +
                   "\" is no address with a mask length, as in 10.0.0.1/24");
}

/// Reports a word that means nothing for an IPv6 address.
void refuseForIp6(const Words& words, const AddressQuery& query) {
  if (!query.ip6) return;
  words.failAtLast("this is for IPv4 alone: all IPv6 addresses of an interface are of one kind, "
                   "and each may be entered again");
}

AddressQuery parseAddressQuery(Words& words) {
  enum { interface, replace, secondary };
  constexpr std::string_view keywords[] = {"interface", "replace", "secondary"};
  AddressQuery query;
  takeAddressWithMask(words, query);
  for (Words::Seen seen; !words.atEnd() || query.interface.empty();) {
    switch (words.takeOnce(keywords, seen)) {
    case interface:
      query.interface = std::string(words.take("the name of an interface"));
      break;
    case replace:
      refuseForIp6(words, query);
      query.replace = true;
      break;
    case secondary:
      refuseForIp6(words, query);
      query.secondary = true;
      break;
    }
  }
  return query;
}

/// An address that replaces one may equal that one, whatever its mask; no other address of the
/// interface.
Rova::AddressQueryResult check4(const state::DeviceState& device, const AddressQuery& query) {
  using Rova::AddrMatchType;
  const auto own = query.replace ? AddrMatchType::allowAddressMatch : AddrMatchType::allowNoMatch;
  const auto primaryMatch = query.secondary ? AddrMatchType::allowNoMatch : own;
  const auto secondaryMatch = query.secondary ? own : AddrMatchType::allowNoMatch;
  return Rova::AddressAssignmentChecker().check(
      Rova::addressQueryParamsFactory(device.ipConfig, query.interface, managementPrefix,
                                      primaryMatch, secondaryMatch, *query.ip4));
}

Rova::AddressQueryResult check6(const state::DeviceState& device, const AddressQuery& query) {
  return Rova::Address6AssignmentChecker().check(Rova::address6QueryParamsFactory(
      device.ip6Config, query.interface, managementPrefix, *query.ip6));
}

/// The VRF behind the keyword vrf, the only word that may follow.
std::string takeVrf(Words& words) {
  constexpr std::string_view keywords[] = {"vrf"};
  if (words.takeKeyword(keywords) < 0) words.failExpecting(keywords);
  std::string name(words.take("the name of a VRF"));
  if (!words.atEnd()) words.fail("nothing is expected behind the name of the VRF");
  return name;
}

} // namespace

ExitStatus checkAddress(Words& words, const Options& options) {
  const auto query = parseAddressQuery(words);
  const auto [device, notes] = openForCheck(options, L3::defaultVrfName);
  const auto result = query.ip4 ? check4(device, query) : check6(device, query);
  return printVerdict(result.acceptable() ? Refusal() : result.msg().str(), notes, options);
}

ExitStatus checkNextHop(Words& words, const Options& options) {
  const auto word = words.take("the address of a next hop");
  const auto hop = Kesh::IpGenAddr::parse(word);
  if (!hop) words.failAtLast("\"" + std::string(word) + "\" is no IPv4 or IPv6 address");
  const auto name = words.atEnd() ? std::string(L3::defaultVrfName) : takeVrf(words);
  const auto [device, notes] = openForCheck(options, name);
  chosenVrf(device, name, options);
  return printVerdict(ownAddressRefusal(device, *hop, name), notes, options);
}

ExitStatus checkRouteDistinguisher(Words& words, const Options& options) {
  const auto word = words.take("a route distinguisher, ASN:N or A.B.C.D:N");
  const auto wanted = Kesh::RouteDistinguisher::parse(word);
  if (!wanted) {
    words.failAtLast("\"" + std::string(word) +
                     "\" is no route distinguisher: expected ASN:N or A.B.C.D:N");
  }
  // A VRF may get its route distinguisher ahead of everything else: it need not exist.
  const auto name = takeVrf(words);
  refuseKernel(options);
  const auto [device, notes] = openState(options);
  const Rova::RdAssignmentChecker checker(device.routeDistinguisherInputDir, Lumo::String(name),
                                          *wanted);
  return printVerdict(checker.acceptable() ? Refusal() : checker.errorMessage().str(), notes,
                      options);
}

} // namespace command
