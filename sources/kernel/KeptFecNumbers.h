// Identifiers of FECs that stay as long as somebody uses them.
#pragma once

#include "sources/kernel/ViaLists.h"

#include <string>

namespace sources::kernel {

/// A FEC is known by what it is: by the number of its nexthop object where it has one, whose
/// content may change under the same identifier, and by its content elsewhere.
class KeptFecNumbers final : public FecNumbers {
 public:
  /// A FEC that stands somewhere already, where it is to keep its identifier.
  void keep(const Vanta::Fib::Fec& fec);
  void keep(const Vanta::Fib6::Fec& fec);

  /// Forgets the FECs of all other lists.
  void number(std::span<ViaList* const> lists) override;
  /// Sets the identifier of one more list.
  void numberOne(ViaList& list);
  /// Nobody uses the list's FEC any more.
  void forget(const ViaList& list);

 private:
  using Content = std::string; // the bytes of all vias
  using Ids = std::unordered_map<Content, Vanta::Fib::FecId>;

  template <class Fec>
  void keepFec(const Fec& fec);
  Vanta::Fib::FecId idFor(const ViaList& list, const Content& content);

  Ids ids_[2];                      ///< of FECs with IPv4 and with IPv6 hops
  std::uint64_t lasts_[2] = {0, 0}; ///< the highest number that was given
};

} // namespace sources::kernel
