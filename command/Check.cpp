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
  auto state = openState(options, needs);
  state.release();
  return state;
}

/// A kernel knows no route distinguishers. A check against nothing would accept anything.
void refuseKernel(const Options& options) {
  if (!sources::isKernel(options.state)) return;
  throw sources::SourceError(options.state + ": has no route distinguishers to check against; " +
                             "--state names the file of a snapshot");
}

/// Reports a word that means nothing for an IPv6 address.
void refuseForIp6(const grammar::Parsed& parsed, std::string_view part) {
  if (!parsed.has(part)) return;
  parsed.fail(part, "this is for IPv4 alone: all IPv6 addresses of an interface are of one kind, "
                    "and each may be entered again");
}

/// An address that replaces one may equal that one, whatever its mask; no other address of the
/// interface.
Rova::AddressQueryResult check4(const state::DeviceState& device, const grammar::Parsed& parsed,
                                const Kesh::IpAddrWithMask& address) {
  using Rova::AddrMatchType;
  const bool isSecondary = parsed.has("secondary");
  const auto own =
      parsed.has("replace") ? AddrMatchType::allowAddressMatch : AddrMatchType::allowNoMatch;
  const auto primaryMatch = isSecondary ? AddrMatchType::allowNoMatch : own;
  const auto secondaryMatch = isSecondary ? own : AddrMatchType::allowNoMatch;
  return Rova::AddressAssignmentChecker().check(
      Rova::addressQueryParamsFactory(device.ipConfig, Lumo::String(parsed.text("interface")),
                                      managementPrefix, primaryMatch, secondaryMatch, address));
}

Rova::AddressQueryResult check6(const state::DeviceState& device, const grammar::Parsed& parsed,
                                const Kesh::Ip6AddrWithMask& address) {
  return Rova::Address6AssignmentChecker().check(Rova::address6QueryParamsFactory(
      device.ip6Config, Lumo::String(parsed.text("interface")), managementPrefix, address));
}

} // namespace

ExitStatus checkAddress(const grammar::Parsed& parsed, const Options& options) {
  const auto* const ip6 = parsed.find<Kesh::Ip6AddrWithMask>("address");
  if (ip6) {
    for (const auto part : {"secondary", "replace"}) refuseForIp6(parsed, part);
  }
  const auto [device, notes, moment] = openForCheck(options, L3::defaultVrfName);
  const auto result = ip6 ? check6(device, parsed, *ip6)
                          : check4(device, parsed, *parsed.find<Kesh::IpAddrWithMask>("address"));
  return printVerdict(result.acceptable() ? Refusal() : result.msg().str(), notes, options);
}

ExitStatus checkNextHop(const grammar::Parsed& parsed, const Options& options) {
  const auto& hop = *parsed.find<Kesh::IpGenAddr>("address");
  const auto name = parsed.text("vrf", L3::defaultVrfName);
  const auto [device, notes, moment] = openForCheck(options, name);
  chosenVrf(device, name, options);
  return printVerdict(ownAddressRefusal(device, hop, name), notes, options);
}

ExitStatus checkRouteDistinguisher(const grammar::Parsed& parsed, const Options& options) {
  // A VRF may get its route distinguisher ahead of everything else: it need not exist.
  const Lumo::String name(parsed.text("vrf"));
  refuseKernel(options);
  const auto state = openState(options);
  const auto& [device, notes, moment] = state;
  state.release();
  const Rova::RdAssignmentChecker checker(device.routeDistinguisherInputDir, name,
                                          *parsed.find<Kesh::RouteDistinguisher>("rd"));
  return printVerdict(checker.acceptable() ? Refusal() : checker.errorMessage().str(), notes,
                      options);
}

} // namespace command
