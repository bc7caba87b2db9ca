// What a listing costs: `bench_listing measure --routes 1000000` prints one JSON object.
// scripts/bench runs the cases, each in a process of its own, and makes a table of them.
#include "Breadth.h"
#include "ByName.h"
#include "Case.h"
#include "Generator.h"
#include "NexthopGroups.h"
#include "StaticRoutes.h"
#include "Where.h"

#include <charconv>
#include <cstring>
#include <iostream>
#include <stdexcept>

namespace {

constexpr const char* usage =
    "usage: bench_listing measure|rows|text|json|snapshot [--shape plain|tunnels|policies|host]\n"
    "                     [--ip6] [--routes N] [--repeats N] [--prefixes FILE]\n"
    "       bench_listing breadth|by-name|nexthop-groups|static [--repeats N]\n"
    "       bench_listing where|summary [--ip6] [--routes N] [--repeats N]\n";

/// Above it a table no longer fits into the memory of common machines.
constexpr std::size_t mostRoutes = 20000000;

constexpr std::size_t nexthopGroups = 10000;
constexpr std::size_t groupEntries = 64;

std::size_t number(const std::string& option, const std::string& text, std::size_t most) {
  std::size_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  if (!whole || value == 0 || value > most) {
    throw std::runtime_error(option + ": found \"" + text + "\", expected a number from 1 to " +
                             std::to_string(most));
  }
  return value;
}

bench::Shape shape(const std::string& text) {
  constexpr std::pair<const char*, bench::Shape> shapes[] = {{"plain", bench::Shape::plain},
                                                             {"tunnels", bench::Shape::tunnels},
                                                             {"policies", bench::Shape::policies},
                                                             {"host", bench::Shape::host}};
  for (const auto& [name, shape] : shapes) {
    if (text == name) return shape;
  }
  throw std::runtime_error("--shape: found \"" + text +
                           "\", expected plain, tunnels, policies or host");
}

bench::CaseOptions parse(const std::vector<std::string>& words) {
  bench::CaseOptions options;
  for (std::size_t at = 0; at < words.size(); ++at) {
    if (words[at] == "--ip6") {
      options.ip6 = true;
      continue;
    }
    if (at + 1 == words.size())
      throw std::runtime_error(words[at] + ": expected a value behind it");
    const std::string& value = words[at + 1];
    if (words[at] == "--routes") {
      options.routes = number(words[at], value, mostRoutes);
    } else if (words[at] == "--shape") {
      options.shape = shape(value);
    } else if (words[at] == "--repeats") {
      options.repeats = static_cast<int>(number(words[at], value, 100));
    } else if (words[at] == "--prefixes") {
      options.prefixFile = value;
      options.ip6 = bench::holdsIp6Prefixes(value);
    } else {
      throw std::runtime_error(words[at] + ": is no option\n" + usage);
    }
    ++at;
  }
  return options;
}

void run(const std::string& what, const bench::CaseOptions& options) {
  if (what == "measure") {
    std::cout << bench::toJson(options, bench::measure(options)) << std::endl;
  } else if (what == "rows") {
    std::cout << bench::checkRows(options) << std::endl;
  } else if (what == "nexthop-groups") {
    std::cout << bench::measureNexthopGroups(nexthopGroups, groupEntries, options.repeats)
              << std::endl;
  } else if (what == "static") {
    std::cout << bench::measureStaticRoutes(options.repeats) << std::endl;
  } else if (what == "breadth") {
    std::cout << bench::measureBreadth(options.repeats) << std::endl;
  } else if (what == "by-name") {
    std::cout << bench::measureByName(options.repeats) << std::endl;
  } else if (what == "where") {
    std::cout << bench::measureWhere(options) << std::endl;
  } else if (what == "summary") {
    std::cout << bench::measureSummary(options) << std::endl;
  } else if (what == "text" || what == "json" || what == "snapshot") {
    bench::writeOutput(options, what);
  } else {
    throw std::runtime_error(what + ": is nothing to do\n" + usage);
  }
}

} // namespace

int main(int argc, char** argv) {
  try {
    if (argc < 2) throw std::runtime_error(usage);
    run(argv[1], parse({argv + 2, argv + argc}));
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "bench_listing: " << error.what() << "\n";
    return 1;
  }
}
