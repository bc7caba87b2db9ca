#include "sources/kernel/KeptFecNumbers.h"

#include <algorithm>

namespace sources::kernel {

namespace {

using Vanta::Fib::AdjType;
using Vanta::Fib::FecId;

/// Set in the numbers of FECs that are known by a nexthop object, whose number stands below.
constexpr std::uint64_t ofObject = std::uint64_t{1} << 40;

std::uint64_t numberOf(FecId id) { return FecId(AdjType::fib, id.value()).value(); }

FecId idOfNumber(bool ip6, std::uint64_t number) {
  return {ip6 ? AdjType::fib6 : AdjType::fib, number};
}

template <class Fec>
std::string contentOf(const Fec& fec) {
  std::string content;
  for (std::uint32_t i = 0; i < std::min(fec.viaCount, Fec::maxVias); ++i) {
    const auto& via = fec.via(Vanta::Fib::ViaIndex(i)); // it has no padding
    content.append(reinterpret_cast<const char*>(&via), sizeof via);
  }
  return content;
}

std::string contentOf(const ViaList& list) {
  std::string content;
  withFec(list, [&](const auto& fec) { content = contentOf(fec); });
  return content;
}

} // namespace

template <class Fec>
void KeptFecNumbers::keepFec(const Fec& fec) {
  const std::uint64_t number = numberOf(fec.key);
  if (number >= ofObject) return; // its object tells it
  const bool ip6 = std::is_same_v<Fec, Vanta::Fib6::Fec>;
  ids_[ip6].try_emplace(contentOf(fec), fec.key);
  lasts_[ip6] = std::max(lasts_[ip6], number);
}

void KeptFecNumbers::keep(const Vanta::Fib::Fec& fec) { keepFec(fec); }
void KeptFecNumbers::keep(const Vanta::Fib6::Fec& fec) { keepFec(fec); }

FecId KeptFecNumbers::idFor(const ViaList& list, const Content& content) {
  const auto found = ids_[list.ip6].find(content);
  return found != ids_[list.ip6].end() ? found->second : idOfNumber(list.ip6, ++lasts_[list.ip6]);
}

void KeptFecNumbers::number(std::span<ViaList* const> lists) {
  Ids used[2];
  for (ViaList* const list : lists) {
    if (list->nexthopId != 0) {
      list->fecId = idOfNumber(list->ip6, ofObject | list->nexthopId);
      continue;
    }
    const Content content = contentOf(*list);
    Ids& ids = used[list->ip6];
    const auto same = ids.find(content);
    list->fecId = same != ids.end() ? same->second : idFor(*list, content);
    ids.emplace(content, list->fecId);
  }
  for (const bool ip6 : {false, true}) ids_[ip6] = std::move(used[ip6]);
}

void KeptFecNumbers::numberOne(ViaList& list) {
  if (list.nexthopId != 0) {
    list.fecId = idOfNumber(list.ip6, ofObject | list.nexthopId);
    return;
  }
  const Content content = contentOf(list);
  list.fecId = idFor(list, content);
  ids_[list.ip6].emplace(content, list.fecId);
}

void KeptFecNumbers::forget(const ViaList& list) {
  if (list.nexthopId == 0) ids_[list.ip6].erase(contentOf(list));
}

} // namespace sources::kernel
