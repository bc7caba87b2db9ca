// VRF names and numbers.
#pragma once

#include "lumo/Exception.h"
#include "lumo/HashMap2018.h"
#include "lumo/Ptr.h"
#include "lumo/String.h"
#include "vanta/VantaMap.h"

#include <cstdint>
#include <memory>

namespace L3 {

/// A VRF name of at most 100 bytes. A longer one raises "VrfName::bytes > VrfName::maxLength not
/// allowed".
class VrfName {
 public:
  /// The most bytes of a name.
  static constexpr std::size_t maxLength = 100;

  VrfName() = default;
  VrfName(const char* text) : VrfName(Lumo::String(text)) {}
  VrfName(Lumo::String text) : text_(std::move(text)) {
    if (text_.bytes() > maxLength) {
      throw Lumo::RangeException("VrfName::bytes > VrfName::maxLength not allowed");
    }
  }
  const Lumo::String& stringValue() const { return text_; }
  std::size_t hash() const { return text_.hash(); }
  friend bool operator==(const VrfName& a, const VrfName& b) { return a.text_ == b.text_; }
  friend bool operator<(const VrfName& a, const VrfName& b) { return a.text_ < b.text_; }

 private:
  Lumo::String text_;
};

/// The VRF that every device has.
inline constexpr const char* defaultVrfName = "default";

} // namespace L3

namespace Vrf::VrfIdMap {

/// A VRF's number. `none` marks a route that was not leaked from another VRF.
class VrfId {
 public:
  /// The number of no VRF.
  static constexpr std::uint32_t none = 0xffffff;

  constexpr VrfId() = default;
  constexpr explicit VrfId(std::uint32_t value) : value_(value) {}
  constexpr std::uint32_t value() const { return value_; }
  std::size_t hash() const { return value_; }
  friend constexpr auto operator<=>(const VrfId&, const VrfId&) = default;

 private:
  std::uint32_t value_ = 0;
};

/// The name of a VRF by its number.
struct VrfEntry {
  VrfId key{VrfId::none};
  Lumo::String name;
};

/// The names of the device's VRFs by number.
class Status : public Lumo::PtrInterface {
 public:
  using Table = Vanta::VantaBase<VrfId, VrfEntry>;
  explicit Status(std::unique_ptr<Table> table) : vrfEntry(std::move(table), "vrfEntry") {}
  Vanta::VantaMap<VrfId, VrfEntry> vrfEntry;
};

/// The numbers of the device's VRFs by name.
class ReverseMapper : public Lumo::PtrInterface {
 public:
  Lumo::HashMap2018<Lumo::String, std::uint32_t> vrfId;
};

} // namespace Vrf::VrfIdMap

// platform/state/Tables.cpp has it.
extern template class Vanta::VantaMap<Vrf::VrfIdMap::VrfId, Vrf::VrfIdMap::VrfEntry>;
