#include "Measure.h"

#include <ctime>
#include <fstream>
#include <malloc.h>
#include <stdexcept>
#include <string>

namespace bench {

namespace {

double seconds(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// A line of /proc/self/status, which counts in KiB.
std::size_t statusBytes(const std::string& field) {
  std::ifstream status("/proc/self/status");
  for (std::string name; status >> name;) {
    std::size_t kibibytes = 0;
    if (name == field && status >> kibibytes) return kibibytes * 1024;
    status.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
  }
  throw std::runtime_error("/proc/self/status: found no " + field);
}

} // namespace

Cost clocks() { return {seconds(CLOCK_MONOTONIC), seconds(CLOCK_PROCESS_CPUTIME_ID)}; }

std::size_t settledMemory() {
  malloc_trim(0);
  return statusBytes("VmRSS:");
}

void resetPeakMemory() {
  std::ofstream file("/proc/self/clear_refs");
  if (!(file << "5" << std::flush)) {
    throw std::runtime_error("/proc/self/clear_refs: cannot be written, so no peak is known");
  }
}

std::size_t peakMemory() { return statusBytes("VmHWM:"); }

} // namespace bench
