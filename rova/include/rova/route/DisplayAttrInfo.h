// The attribute infos that route displays add to the printer's: values that look different in text
// and model.
#pragma once

#include "rova/core/Export.h"
#include "rova/route/RouteTypeStrings.h"
#include "scrivo/AttrInfo.h"

#include <type_traits>

namespace scrivo {

/// A blank for a route that is programmed in hardware, else the mark "*".
class ROVA_EXPORT HardwareProgrammedAttrInfo : public BoolAttrInfo {
 public:
  using BoolAttrInfo::BoolAttrInfo;
  void setValue(bool value) override { store(value, value ? " " : "*"); }
};

/// A blank for a route that is programmed in the kernel, else the mark "%".
class ROVA_EXPORT KernelProgrammedAttrInfo : public BoolAttrInfo {
 public:
  using BoolAttrInfo::BoolAttrInfo;
  void setValue(bool value) override { store(value, value ? " " : "%"); }
};

/// The mark " L" for a route that was leaked from another VRF, else nothing.
class ROVA_EXPORT RouteLeakedAttrInfo : public BoolAttrInfo {
 public:
  using BoolAttrInfo::BoolAttrInfo;
  void setValue(bool value) override { store(value, value ? " L" : ""); }
};

/// A route type: its code in text, its word in the model.
class ROVA_EXPORT RouteTypeAttrInfo : public StringAttrInfo {
 public:
  using StringAttrInfo::setValue;
  using StringAttrInfo::StringAttrInfo;
  /// Takes a type of either family.
  template <class RouteType>
  void setValue(RouteType type) requires std::is_enum_v<RouteType> {
    StringAttrInfo::setValue(format() == textFormat ? Rova::pcode(type) : wordFor(type));
  }

 private:
  template <class RouteType>
  const char* wordFor(RouteType type) {
    LUMO_ASSERT(format() == modelFormat, "0");
    return Rova::pcodeAsWord(type);
  }
};

/// A route type of the host route table: its code and two blanks in text, its word in the model.
class ROVA_EXPORT HostRouteTypeAttrInfo : public StringAttrInfo {
 public:
  using StringAttrInfo::setValue;
  using StringAttrInfo::StringAttrInfo;
  template <class RouteType>
  void setValue(RouteType type) requires std::is_enum_v<RouteType> {
    if (format() == textFormat) {
      code_[0] = Rova::hcode(type);
      return StringAttrInfo::setValue(static_cast<const char*>(code_));
    }
    LUMO_ASSERT(format() == modelFormat, "0");
    StringAttrInfo::setValue(Rova::hcodeWord(type));
  }

 private:
  char code_[4] = {' ', ' ', ' ', '\0'};
};

/// The action of a configured route: its code in text, its word in the model.
class ROVA_EXPORT RibRouteTypeAttrInfo : public StringAttrInfo {
 public:
  using StringAttrInfo::setValue;
  using StringAttrInfo::StringAttrInfo;
  void setValue(Routing::RouteType type) {
    if (format() == textFormat) return StringAttrInfo::setValue(Rova::ribRouteTypeCode(type));
    LUMO_ASSERT(format() == modelFormat, "0");
    StringAttrInfo::setValue(Rova::ribRouteType(type));
  }
};

} // namespace scrivo
