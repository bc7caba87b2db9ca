#include "rova/route/ShownRoutes.h"

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
  Body(Sorter<Family>& taken, Question asked)
      : sorter(taken), resolver(taken), question(std::move(asked)) {}

  std::uint64_t answer(const Route& route);
  std::uint64_t read(const Route& route, RouteLine& line, Asked& asked);

  Sorter<Family>& sorter;
  RouteResolver<Family> resolver;
  const Question question;
  FecLooks<Asked> fecs;
  ShownVias vias;
};

template <class Family>
std::uint64_t ShownRoutes<Family>::Body::answer(const Route& route) {
  Asked& asked = fecs.look(route.fecId, [&] { return Asked{resolver.lookAt(route)}; });
  RouteLine line;
  line.prefix = route.key;
  const bool isShared = asked.look.fec && resolver.sharesVias(route, line, asked.look);
  if (isShared && asked.look.vias.isKnown(resolver.hasV6Nexthop())) return asked.answer;
  const auto answer = read(route, line, asked);
  if (isShared) {
    asked.look.vias.isPrinted(LineForm::vias, resolver.hasV6Nexthop(), line.prefix);
    asked.answer = answer;
  }
  return answer;
}

template <class Family>
std::uint64_t ShownRoutes<Family>::Body::read(const Route& route, RouteLine& line, Asked& asked) {
  if (!asked.look.fec || !resolver.resolve(route, asked.look, line)) return question({});
  readShownVias(line, {resolver.hasV6Nexthop(), sorter.degradeNhgModel()}, vias,
                asked.look.vias.askedHops);
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

template class ShownRoutes<Ip4Family>;
template class ShownRoutes<Ip6Family>;

} // namespace Rova
