#include "state/FecId.h"
#include "state/TunnelId.h"

namespace {

/// Bob Jenkins' one-at-a-time hash over the bytes of a number, lowest first.
std::uint32_t oneAtATime(std::uint64_t value) {
  std::uint32_t hash = 0;
  for (int i = 0; i < 8; ++i) {
    hash += static_cast<std::uint8_t>(value >> (8 * i));
    hash += hash << 10;
    hash ^= hash >> 6;
  }
  hash += hash << 3;
  hash ^= hash >> 11;
  return hash + (hash << 15);
}

} // namespace

std::uint32_t Vanta::Fib::FecId::hash() const { return oneAtATime(value_); }

namespace Tunnel::TunnelTable {

std::uint32_t TunnelId::hash() const { return oneAtATime(value_); }

TunnelId tunnelIdOfIntf(const Kesh::IntfId& intfId) {
  if (Kesh::DynamicTunnelIntfId::isDynamicTunnelIntfId(intfId)) {
    return TunnelId(Kesh::DynamicTunnelIntfId::tunnelId(intfId));
  }
  if (!Kesh::TunnelIntfId::isTunnelIntfId(intfId)) return {};
  constexpr auto kind = static_cast<std::uint64_t>(TunnelKind::staticInterface);
  return TunnelId(TunnelId::convertToTunnelValue(kind, Kesh::TunnelIntfId::port(intfId) & 0xffff));
}

} // namespace Tunnel::TunnelTable
