#include "sources/database/Columns.h"

#include "sources/database/Showable.h"

namespace sources::database {

namespace {

[[noreturn]] void failPrefix(std::uint64_t rest) {
  throw WrongColumn("last: found an address that is not the last of a prefix, expected one with " +
                    std::to_string(rest) + " bits set at its end");
}

/// The prefix whose last address and missing length those are.
template <class Prefix, class Address>
void makePrefix(const Address& last, std::uint64_t rest, Prefix& prefix) {
  prefix = Prefix(last, static_cast<std::int32_t>(Address::bits - rest));
  if (prefix.last() != Prefix(last, Address::bits).last()) failPrefix(rest);
}

template <class Address>
std::string_view bytesOf(const Address& address) {
  return {reinterpret_cast<const char*>(address.bytes().data()), address.bytes().size()};
}

} // namespace

void bindPrefix(Statement& statement, const Kesh::Prefix& prefix) {
  statement.bind(std::int64_t{prefix.last()}).bind(std::int64_t{32 - prefix.len()});
}

void bindPrefix(Statement& statement, const Kesh::Ip6Prefix& prefix) {
  const auto [high, low] = prefix.last();
  statement.bindBlob(bytesOf(Kesh::Ip6Addr::fromHalves(high, low)));
  statement.bind(std::int64_t{128 - prefix.len()});
}

void readPrefix(Statement& row, Kesh::Prefix& prefix) {
  const auto last = Kesh::IpAddr::fromHost(readWord(row, "last"));
  makePrefix(last, row.number("rest", Kesh::IpAddr::bits), prefix);
}

void readPrefix(Statement& row, Kesh::Ip6Prefix& prefix) {
  const auto last = Kesh::Ip6Addr::fromBytes(row.blob("last", 16).data());
  makePrefix(last, row.number("rest", Kesh::Ip6Addr::bits), prefix);
}

void bindAddress(Statement& statement, const Kesh::IpAddr& address) {
  statement.bind(std::int64_t{address.host()});
}

void bindAddress(Statement& statement, const Kesh::Ip6Addr& address) {
  statement.bindText(address.stringValue().view());
}

void readAddress(Statement& row, const char* column, Kesh::IpAddr& address) {
  address = Kesh::IpAddr::fromHost(readWord(row, column));
}

void readAddress(Statement& row, const char* column, Kesh::Ip6Addr& address) {
  const auto text = row.text(column);
  const auto parsed = Kesh::Ip6Addr::parse(text);
  if (!parsed) row.wrong(column, "an IPv6 address");
  address = *parsed;
}

void bindInterface(Statement& statement, const Kesh::IntfId& intfId) {
  if (intfId) {
    statement.bind(signedInterface(intfId));
  } else {
    statement.bindNull();
  }
}

Kesh::IntfId readInterface(Statement& row, const char* column, Session& session) {
  if (row.null()) return {};
  const auto intfId = Kesh::IntfId::fromValue(static_cast<std::uint64_t>(row.integer(column)));
  if (isStrangeFec(intfId)) row.wrong(column, "an interface, or a FEC of a known type");
  session.requireName(intfId);
  return intfId;
}

} // namespace sources::database
