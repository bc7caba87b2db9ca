// Feeds any bytes as strep text to every registered type that reads one: it refuses them with a
// range error, or it reads a value that is written as the same text. In the input '@' stands for
// the address of a directory that lives and '#' for that of a tunnel FIB.
#include "lumo/Reflect.h"
#include "rova/CliSupport.h"
#include "state/RouteDistinguisherInput.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

[[noreturn]] void stop(const char* why, const Lumo::TypeRecord& type, const std::string& text) {
  std::fprintf(stderr, "%s: %s\n%s\n", type.name, why, text.c_str());
  std::abort();
}

/// The address in the text of an entity's handle, without "0x".
std::string addressIn(const Lumo::String& text) {
  const std::string whole = text.str();
  const auto start = whole.find("0x") + 2;
  return whole.substr(start, whole.size() - start - 1);
}

/// Entities that texts may name; a checker on the directory refuses one route distinguisher.
struct Entities {
  Entities() {
    const auto input = Lumo::newEntity<Ip::RouteDistinguisherInput>();
    input->routeDistinguisher.insertOrAssign("blue", *Kesh::RouteDistinguisher::parse("65000:7"));
    dir->entityIs("agent", input);
  }
  Lumo::Ptr<Lumo::Dir> dir = Lumo::newEntity<Lumo::Dir>();
  Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib> fib =
      Lumo::newEntity<Tunnel::TunnelFib::TunnelFib>();
  std::string dirAddress = addressIn(Lumo::valueToStrep(dir));
  std::string fibAddress = addressIn(Lumo::valueToStrep(fib));
};

std::string withAddresses(std::string_view input) {
  static const auto* const entities = new Entities;
  std::string text;
  for (const char c : input) {
    if (c == '@') {
      text += entities->dirAddress;
    } else if (c == '#') {
      text += entities->fibAddress;
    } else {
      text += c;
    }
  }
  return text;
}

/// What the type reads and writes again; stops the process if it refuses its own text.
std::string readAgain(const Lumo::TypeRecord& type, const std::string& written) {
  try {
    return Lumo::fromStrep(type, written)->strRep().str();
  } catch (const Lumo::RangeException& error) {
    stop(error.what(), type, written);
  }
}

void check(const Lumo::TypeRecord& type, const std::string& text) {
  std::string written;
  try {
    written = Lumo::fromStrep(type, text)->strRep().str();
  } catch (const Lumo::RangeException&) {
    return;
  }
  // A type that works some of its attributes out changes the text, but not a second time.
  if (!type.handleInitialized && written != text) stop("the text comes back changed", type, text);
  if (readAgain(type, written) != written) stop("its own text comes back changed", type, written);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = withAddresses({reinterpret_cast<const char*>(data), size});
  for (const Lumo::TypeRecord* const type : Lumo::typeNodes()) {
    if (type->isReadable()) check(*type, text);
  }
  return 0;
}
