#include "rova/route/ShownRoutes.h"

#include "FecWords.h"
#include "RouteResolver.h"
#include "ShownVias.h"

namespace Rova {

namespace {

/// What is known of a FEC, and the answer for the routes that share its vias.
struct Asked {
  FecLook look;
  std::uint64_t answer = 0;
};

} // namespace

template <class Family>
struct ShownRoutes<Family>::Body {
  Body(Sorter<Family>& taken, Question posed)
      : sorter(taken), resolver(taken), question(std::move(posed)) {}

  std::uint64_t answer(const Route& route);
  std::uint64_t answerApart(const Route& route);
  std::uint64_t read(const Route& route, FecLook& look);

  Sorter<Family>& sorter;
  RouteResolver<Family> resolver;
  const Question question;
  FecWords answers; ///< for routes that show what others on their FEC show
  bool areForm6 = false;
  FecLooks<Asked> asked; ///< the FECs of those that may not
  ShownVias vias;
};

/// Whether a route may show its vias otherwise than others on its FEC.
template <class Route>
bool mayDiffer(const Route& route) {
  return isReceive(route.routeType) || isNexthopGroup(route.routeType) || isHostRoute(route.key);
}

template <class Family>
std::uint64_t ShownRoutes<Family>::Body::answer(const Route& route) {
  if (mayDiffer(route)) return answerApart(route);
  if (areForm6 != resolver.hasV6Nexthop()) answers.clear();
  areForm6 = resolver.hasV6Nexthop();
  if (const auto* const known = answers.find(route.fecId)) return *known;
  FecLook look = resolver.lookAt(route);
  const auto answer = read(route, look);
  answers.enter(route.fecId, answer);
  return answer;
}

/// As the printer does with lines: what was asked of a FEC holds for all that do not differ.
template <class Family>
std::uint64_t ShownRoutes<Family>::Body::answerApart(const Route& route) {
  auto& [look, answer] = asked.look(route.fecId, [&] { return Asked{resolver.lookAt(route)}; });
  RouteLine line;
  line.prefix = route.key;
  if (!look.fec || !resolver.sharesVias(route, line, look)) return read(route, look);
  if (look.vias.isKnown(resolver.hasV6Nexthop())) return answer;
  const auto found = answer = read(route, look);
  look.vias.isPrinted(LineForm::vias, resolver.hasV6Nexthop(), line.prefix);
  return found;
}

/// A FEC that got no rows gets them again at its first print: the weight of its vias, which the
/// hardware's limit on them cuts, must then be what it was.
template <class Family>
std::uint64_t ShownRoutes<Family>::Body::read(const Route& route, FecLook& look) {
  if (!look.fec) return question({});
  RouteLine line;
  line.prefix = route.key;
  const auto weight = look.fec->weight();
  const bool isShown = resolver.resolve(route, look, line);
  if (look.fec->numEntries() == 0) look.fec->weightIs(weight);
  if (!isShown) return question({});
  readShownVias(line, {resolver.hasV6Nexthop(), sorter.degradeNhgModel()}, vias,
                look.vias.askedHops);
  return question(vias);
}

template <class Family>
ShownRoutes<Family>::ShownRoutes(Sorter<Family>& sorter, Question question)
    : body_(std::make_unique<Body>(sorter, std::move(question))) {}

template <class Family>
ShownRoutes<Family>::~ShownRoutes() = default;

template <class Family>
RouteHead ShownRoutes<Family>::head(const Route& route) {
  const RouteLine line = body_->resolver.lineOf(route);
  const RouteTypeStrings& texts = routeTypeStringsLookup(route.routeType);
  return {.prefix = line.prefix,
          .length = static_cast<std::uint32_t>(line.prefix.len()),
          .type = texts.pcodeWord,
          .protocolCode = texts.protocolCode,
          .preference = static_cast<std::uint32_t>(line.preference),
          .metric = line.metric,
          .routeLeaked = line.routeLeaked,
          .srcVrf = line.routeLeaked ? line.srcVrfName : "",
          .hardwareProgrammed = line.hardwareProgrammed,
          .kernelProgrammed = line.kernelProgrammed};
}

template <class Family>
std::uint64_t ShownRoutes<Family>::answer(const Route& route) {
  return body_->answer(route);
}

template <class Family>
void ShownRoutes<Family>::expect(const Route& route) const {
  body_->answers.expect(route.fecId);
}

template class ShownRoutes<Ip4Family>;
template class ShownRoutes<Ip6Family>;

} // namespace Rova
