#include "rova/check/RdAssignmentChecker.h"

#include "lumo/Assert.h"

#include <optional>

namespace Rova {

LUMO_DEFINE_TYPE(RdAssignmentChecker);

namespace {

/// The first VRF but `own` for which the input has the route distinguisher.
std::optional<L3::VrfName> otherUser(const Ip::RouteDistinguisherInput& input,
                                     const Lumo::String& own,
                                     const Kesh::RouteDistinguisher& wanted) {
  for (auto at = input.routeDistinguisher.cursor(); at; at.next()) {
    if (*at.value() == wanted && !(at.key().stringValue() == own)) return at.key();
  }
  return {};
}

} // namespace

void RdAssignmentChecker::handleInitialized() {
  static const auto noInputs = Lumo::newEntity<Lumo::Dir>();
  const Lumo::Dir& inputs = routeDistinguisherInputDir_ ? *routeDistinguisherInputDir_ : *noInputs;
  const auto& entries = inputs.entities();
  for (auto at = entries.cursor(); at; at.next()) {
    const auto input = Lumo::dynamicPtrCast<Ip::RouteDistinguisherInput>(inputs.entity(at.key()));
    LUMO_ASSERT(input, "__null != routeDistinguisherInput");
    if (const auto other = otherUser(*input, vrfName_, routeDistinguisher_)) {
      acceptable_ = false;
      errorMessage_ = "RD " + routeDistinguisher_.stringValue().str() + " already in use by VRF " +
                      other->stringValue().str();
      return;
    }
  }
  acceptable_ = true;
}

} // namespace Rova
