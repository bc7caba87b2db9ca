#include "command/filter/Help.h"

#include "command/filter/Field.h"
#include "command/grammar/Table.h"

#include <algorithm>

namespace command::filter {

namespace {

constexpr std::string_view intro = R"(usage: rova show ip route ... where EXPRESSION...
       rova show ipv6 route ... where EXPRESSION...
       rova watch ip route ... where EXPRESSION...
       rova watch ipv6 route ... where EXPRESSION...
       rova diff SOURCE SOURCE ... where EXPRESSION...

The routes for which the expression holds. Everything behind where is the expression.

)";

constexpr std::string_view behindFields = R"(
A field that has several values, as the next hops of a route, holds if one of them
does. One that a route does not have holds for no value. a != b is not a = b.

)";

constexpr std::string_view examples = R"(
examples:
  rova show ip route where not hardware
  rova show ip route where nexthop = 192.0.2.1 and length '>' 24
  rova show ip route vrf all where 'prefix in 10.0.0.0/8 and protocol in {bgp, static}'
  rova show ipv6 route where 'vias >= 2 and interface ~ "Ethernet*"'

a shell of the system needs quotes around signs that mean something to it; quotes
inside of them keep blanks and signs in a value.
)";

std::string typeName(Type type) {
  switch (type) {
  case Type::prefix:
    return "prefix";
  case Type::address:
    return "address";
  case Type::number:
    return "number";
  case Type::name:
    return "name";
  case Type::word:
    return "word";
  case Type::flag:
    break;
  }
  return "yes or no";
}

std::vector<grammar::Row> fieldRows() {
  std::size_t width = 0;
  for (const Field& field : fields()) width = std::max(width, field.name.size());
  std::vector<grammar::Row> rows;
  for (const Field& field : fields()) {
    const std::string gap(width + 2 - field.name.size(), ' ');
    rows.push_back(
        {std::string(field.name) + gap + typeName(field.type), std::string(field.meaning)});
  }
  return rows;
}

const std::vector<grammar::Row>& operatorRows() {
  static const std::vector<grammar::Row> rows = {
      {"=, !=", "is, or is not, that value"},
      {"<, <=, >, >=", "numbers"},
      {"in", "a value, or one of a list: {bgp, static}; a prefix covers prefixes and addresses; "
             "10..20 is a range of numbers"},
      {"~", "a pattern of names or words: * stands for anything, ? for one character"},
      {"not, and, or, ( )", "in the order in which they bind"},
      {"a field by itself", "of the type yes or no: where backup"}};
  return rows;
}

} // namespace

std::string helpText() {
  return std::string(intro) + grammar::tableOf(fieldRows()) + std::string(behindFields) +
         grammar::tableOf(operatorRows()) + std::string(examples);
}

} // namespace command::filter
