// Feeds any bytes as the expression behind "where": each is refused with a place inside of it, or
// behind it, or it holds for a route or does not.
#include "command/filter/Expression.h"
#include "command/filter/ExpressionError.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

using namespace command;

namespace {

Rova::ShownVias someVias() {
  const Kesh::Prefix address(Kesh::IpAddr::fromHost(0xc0000201), Kesh::Prefix::maxLength);
  Rova::ShownVias vias;
  vias.vias = 1;
  vias.nexthopAddr = vias.tunnelEndpoint = {address};
  vias.interface = {"Ethernet1", "büro*"};
  vias.tunnelType = {"LDP"};
  vias.label = {100, 200};
  return vias;
}

/// Both ways in which a comparison is asked; it must hold for what has its field alone.
bool ask(const filter::Comparison& comparison, const Rova::ShownVias& vias) {
  const Rova::RouteHead head{.prefix = Kesh::pfx(0x0a000000, 8), .length = 8, .type = "static"};
  const bool ofVias = comparison.holds(vias), ofHead = comparison.holds(head);
  if (isOfVias(*comparison.field) ? ofHead : ofVias) std::abort();
  return ofVias || ofHead;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto vias = someVias();
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const auto expression = filter::readExpression(text);
    expression.holds([&](std::size_t at) { return ask(expression.comparisons().at(at), vias); });
  } catch (const filter::ExpressionError& error) {
    if (error.place() > size + 1) {
      std::fprintf(stderr, "an error stands behind its text: %s\n", error.what());
      std::abort();
    }
  }
  return 0;
}
