#include "Case.h"

#include "Generator.h"
#include "Listing.h"
#include "SnapshotText.h"
#include "lumo/ActivityLock.h"

#include <fcntl.h>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace bench {

namespace {

/// An open file without a name, or /dev/null, closed at the end.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {
    if (fd_ < 0) throw std::runtime_error("no file to print the listing to can be opened");
  }
  ~Descriptor() { ::close(fd_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int fd() const { return fd_; }

 private:
  int fd_;
};

template <class Prefix>
std::vector<Prefix> prefixesOf(const CaseOptions& options) {
  if (options.prefixFile.empty()) return makePrefixes<Prefix>(options.routes);
  return readPrefixes<Prefix>(options.prefixFile);
}

template <class Prefix>
std::size_t routesOf(const state::DeviceState& device) {
  const state::VrfState& vrf = device.vrfs.front();
  if constexpr (std::is_same_v<Prefix, Kesh::Prefix>) {
    return vrf.routingStatus->route.members();
  } else {
    return vrf.routing6Status->route.members();
  }
}

/// The length of a listing, from a file that takes it.
template <class Prefix>
std::size_t bytesOf(const state::DeviceState& device, Form form) {
  const Descriptor file(::open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
  print(*makeSorter(device, Prefix()), file.fd(), form);
  struct stat status {};
  ::fstat(file.fd(), &status);
  return static_cast<std::size_t>(status.st_size);
}

/// Selection and one render. The sorter dies here, outside the measurement.
template <class Prefix>
void measureListing(const state::DeviceState& device, Form form, CaseResult& result, Cost& render) {
  const Descriptor null(::open("/dev/null", O_WRONLY | O_CLOEXEC));
  decltype(makeSorter(device, Prefix())) sorter;
  result.selection.lower(costOf([&] { sorter = makeSorter(device, Prefix()); }));
  result.selected = sorter->sortedRoutes();
  render.lower(costOf([&] { print(*sorter, null.fd(), form); }));
}

/// The first listing of the process, so that no memory of an earlier one is used again.
template <class Prefix>
void measureMemory(const state::DeviceState& device, CaseResult& result) {
  result.tableMemory = settledMemory();
  resetPeakMemory();
  measureListing<Prefix>(device, Form::text, result, result.text);
  result.listingMemory = peakMemory() - result.tableMemory;
}

template <class Prefix>
CaseResult measureFamily(const CaseOptions& options) {
  constexpr std::size_t stepsToYield = 2001;
  CaseResult result;
  state::DeviceBuilder device;
  {
    const auto prefixes = prefixesOf<Prefix>(options);
    result.load = costOf([&] { fillDevice(device, prefixes); });
    result.fecs = fecCount(prefixes.size());
  }
  result.routes = routesOf<Prefix>(device.state);
  result.yields = result.routes / stepsToYield;
  measureMemory<Prefix>(device.state, result);
  for (int i = 0; i < options.repeats; ++i) {
    measureListing<Prefix>(device.state, Form::text, result, result.text);
    measureListing<Prefix>(device.state, Form::model, result, result.model);
  }
  result.textBytes = bytesOf<Prefix>(device.state, Form::text);
  result.modelBytes = bytesOf<Prefix>(device.state, Form::model);
  return result;
}

template <class Prefix>
void writeFamily(const CaseOptions& options, const std::string& what) {
  state::DeviceBuilder device;
  fillDevice(device, prefixesOf<Prefix>(options));
  if (what == "snapshot") return writeSnapshot(device.state, std::cout);
  print(*makeSorter(device.state, Prefix()), STDOUT_FILENO,
        what == "json" ? Form::model : Form::text);
}

void putCost(std::ostream& out, const char* name, const Cost& cost) {
  out << ",\"" << name << "\":{\"wall\":" << cost.wall << ",\"cpu\":" << cost.cpu << '}';
}

} // namespace

CaseResult measure(const CaseOptions& options) {
  const Lumo::ActivityLockHold hold;
  return options.ip6 ? measureFamily<Kesh::Ip6Prefix>(options)
                     : measureFamily<Kesh::Prefix>(options);
}

void writeOutput(const CaseOptions& options, const std::string& what) {
  const Lumo::ActivityLockHold hold;
  options.ip6 ? writeFamily<Kesh::Ip6Prefix>(options, what)
              : writeFamily<Kesh::Prefix>(options, what);
}

std::string toJson(const CaseOptions& options, const CaseResult& result) {
  std::ostringstream out;
  out.precision(9);
  out << "{\"family\":\"" << (options.ip6 ? "IPv6" : "IPv4") << "\",\"routes\":" << result.routes
      << ",\"fecs\":" << result.fecs << ",\"selected\":" << result.selected;
  putCost(out, "load", result.load);
  putCost(out, "selection", result.selection);
  putCost(out, "text", result.text);
  putCost(out, "model", result.model);
  out << ",\"textBytes\":" << result.textBytes << ",\"modelBytes\":" << result.modelBytes
      << ",\"yields\":" << result.yields << ",\"tableMemory\":" << result.tableMemory
      << ",\"listingMemory\":" << result.listingMemory << '}';
  return out.str();
}

} // namespace bench
