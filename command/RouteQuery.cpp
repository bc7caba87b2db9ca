#include "command/RouteQuery.h"

#include "command/filter/ExpressionError.h"

#include <sstream>

namespace command {

namespace {

std::vector<std::string> wordsOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

filter::Expression expressionOf(const grammar::Parsed& parsed) {
  try {
    return filter::readExpression(parsed.text("where"));
  } catch (const filter::ExpressionError& error) {
    parsed.fail("where", error.what(), error.place());
  }
}

} // namespace

template <class Prefix>
RouteQuery<Prefix> routeQuery(const grammar::Parsed& parsed) {
  RouteQuery<Prefix> query;
  query.vrf = parsed.text("vrf", query.vrf);
  if (const auto* const target = parsed.find<grammar::Target<Prefix>>("target")) {
    query.prefix = target->prefix;
    query.typedMask = target->typedMask;
  }
  query.longerPrefixes = parsed.has("longer-prefixes");
  query.detail = parsed.has("detail");
  query.protocols = wordsOf(parsed.text("protocol"));
  if (parsed.has("where")) query.where = expressionOf(parsed);
  if (parsed.has("interface")) query.interface = parsed.text("interface");
  return query;
}
template RouteQuery<Kesh::Prefix> routeQuery(const grammar::Parsed&);
template RouteQuery<Kesh::Ip6Prefix> routeQuery(const grammar::Parsed&);

} // namespace command
