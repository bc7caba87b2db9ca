#include "ByName.h"

#include "Measure.h"
#include "lumo/Reflect.h"
#include "rova/CliSupport.h"

#include <sstream>

namespace bench {

namespace {

constexpr int calls = 200'000; // enough for a few milliseconds

/// Nanoseconds of processor time of one call.
template <class Work>
double nanosecondsOf(int repeats, Work work) {
  Cost lowest;
  for (int i = 0; i < repeats; ++i) {
    lowest.lower(costOf([&] {
      for (int call = 0; call < calls; ++call) work();
    }));
  }
  return lowest.cpu / calls * 1e9;
}

} // namespace

std::string measureByName(int repeats) {
  const Lumo::TypeRecord& type = *Lumo::typeNode("Rova::RouteSortKey");
  const Lumo::TypeRecord& fec = *Lumo::typeNode("Rova::CachedFec");
  const Lumo::GenericArguments arguments = {
      Lumo::wrapAttrValue(*Kesh::IpGenPrefix::parse("10.0.0.0/8")),
      Lumo::wrapAttrValue(Routing::RoutePreference(200))};
  const auto key = Lumo::construct(type, arguments);
  const auto entity = Lumo::construct(fec, {Lumo::wrapAttrValue(Vanta::Fib::FecId(1))});
  const Lumo::String text = key->strRep();

  std::ostringstream out;
  out.precision(4);
  out << "{\"readNs\":" << nanosecondsOf(repeats, [&] { Lumo::read(*key, "preference"); })
      << ",\"readLateNs\":" << nanosecondsOf(repeats, [&] { Lumo::read(*entity, "weight"); })
      << ",\"buildNs\":"
      << nanosecondsOf(repeats,
                       [&] { Lumo::construct(*Lumo::typeNode("Rova::RouteSortKey"), arguments); })
      << ",\"writeTextNs\":" << nanosecondsOf(repeats, [&] { key->strRep(); })
      << ",\"readTextNs\":" << nanosecondsOf(repeats, [&] { Lumo::fromStrep(type, text); }) << '}';
  return out.str();
}

} // namespace bench
