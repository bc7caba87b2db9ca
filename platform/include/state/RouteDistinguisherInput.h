// Route distinguishers in use.
#pragma once

#include "kesh/RouteDistinguisher.h"
#include "lumo/HashMap2018.h"
#include "lumo/Ptr.h"
#include "state/Vrf.h"

namespace Ip {

/// The route distinguishers that one agent publishes, by VRF.
class RouteDistinguisherInput : public Lumo::PtrInterface {
 public:
  Lumo::HashMap2018<L3::VrfName, Kesh::RouteDistinguisher> routeDistinguisher;
};

} // namespace Ip
