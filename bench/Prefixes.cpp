// Where prefixes come from: shares of mask lengths, or a file.
#include "Generator.h"
#include "Random.h"

#include <algorithm>
#include <fstream>
#include <numeric>
#include <stdexcept>

namespace bench {

namespace {

/// How many prefixes of a length a real table holds.
struct LengthShare {
  int length;
  std::uint64_t prefixes;
};

/// The default-free tables of both families as one public collector saw them; IPv6 without the
/// lengths below one in a hundred.
constexpr LengthShare shares4[] = {
    {8, 16},     {9, 14},     {10, 39},     {11, 95},     {12, 297},    {13, 584},
    {14, 1201},  {15, 2129},  {16, 13635},  {17, 8347},   {18, 13387},  {19, 25516},
    {20, 45627}, {21, 52463}, {22, 113741}, {23, 107869}, {24, 657365},
};
constexpr LengthShare shares6[] = {
    {29, 5435},  {32, 26740}, {33, 5407}, {34, 5197}, {36, 9424},   {40, 23096},
    {44, 24860}, {45, 4511},  {46, 5640}, {47, 8925}, {48, 111866},
};

/// The space that prefixes are drawn from, and the lengths that take what the others have no room
/// for and what rounding leaves over.
template <class Prefix>
struct Space;

template <>
struct Space<Kesh::Prefix> {
  static constexpr auto& shares = shares4;
  static constexpr int overflow[] = {25, 26, 27, 28};
  /// 1.0.0.0 to 223.255.255.255: all that is routed.
  static std::uint64_t slots(int length) { return 223ull << (length - 8); }
  static Kesh::Prefix at(std::uint64_t slot, int length) {
    return Kesh::pfx(static_cast<std::uint32_t>((slot << (32 - length)) + (1u << 24)), length);
  }
};

template <>
struct Space<Kesh::Ip6Prefix> {
  static constexpr auto& shares = shares6;
  static constexpr int overflow[] = {64};
  /// 2000::/3, of which no length reaches into the lower 64 bits.
  static std::uint64_t slots(int length) { return 1ull << (length - 3); }
  static Kesh::Ip6Prefix at(std::uint64_t slot, int length) {
    return Kesh::pfx(Kesh::Ip6Addr::fromHalves((slot << (64 - length)) | 1ull << 61, 0), length);
  }
};

/// That many different numbers below `bound`.
std::vector<std::uint64_t> differentNumbers(Random& random, std::uint64_t bound,
                                            std::size_t count) {
  std::vector<std::uint64_t> numbers;
  while (numbers.size() < count) {
    while (numbers.size() < count) numbers.push_back(random.below(bound));
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  }
  return numbers;
}

/// Adds `count` prefixes of a length, but no more than fill a quarter of the space.
template <class Prefix>
void addLength(std::vector<Prefix>& prefixes, Random& random, int length, std::size_t count) {
  const std::uint64_t slots = Space<Prefix>::slots(length);
  const auto fitting = std::min<std::size_t>(count, slots / 4);
  for (const std::uint64_t slot : differentNumbers(random, slots, fitting)) {
    prefixes.push_back(Space<Prefix>::at(slot, length));
  }
}

template <class Prefix>
std::uint64_t allShares() {
  const auto& shares = Space<Prefix>::shares;
  return std::accumulate(
      std::begin(shares), std::end(shares), std::uint64_t{0},
      [](std::uint64_t sum, const LengthShare& share) { return sum + share.prefixes; });
}

template <class Prefix>
void shuffle(std::vector<Prefix>& prefixes, Random& random) {
  for (std::size_t left = prefixes.size(); left > 1; --left) {
    std::swap(prefixes[left - 1], prefixes[random.below(left)]);
  }
}

std::runtime_error badLine(const std::string& path, std::size_t line, const std::string& text) {
  return std::runtime_error(path + ":" + std::to_string(line) + ": found \"" + text +
                            "\", expected a prefix without host bits, of one family in the file");
}

std::ifstream open(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error(path + ": cannot be read");
  return file;
}

} // namespace

template <class Prefix>
std::vector<Prefix> makePrefixes(std::size_t count) {
  Random random(count);
  std::vector<Prefix> prefixes{Prefix()}; // the default route
  prefixes.reserve(count);
  const std::uint64_t sum = allShares<Prefix>();
  for (const auto& [length, share] : Space<Prefix>::shares) {
    addLength(prefixes, random, length, (count - 1) * share / sum);
  }
  std::size_t lengthsLeft = std::size(Space<Prefix>::overflow);
  for (const int length : Space<Prefix>::overflow) {
    addLength(prefixes, random, length, (count - prefixes.size()) / lengthsLeft--);
  }
  shuffle(prefixes, random);
  return prefixes;
}

std::vector<Kesh::Prefix> makeHostPrefixes(std::size_t count) {
  constexpr std::uint32_t first = 100u << 24; // 100.0.0.0/7 is the space
  Random random(count);
  std::vector<Kesh::Prefix> prefixes;
  prefixes.reserve(count);
  for (const std::uint64_t host : differentNumbers(random, std::uint64_t{1} << 25, count)) {
    prefixes.push_back(Kesh::pfx(first + static_cast<std::uint32_t>(host), 32));
  }
  shuffle(prefixes, random);
  return prefixes;
}

template <class Prefix>
std::vector<Prefix> readPrefixes(const std::string& path) {
  std::ifstream file = open(path);
  std::vector<Prefix> prefixes;
  std::size_t number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    const auto prefix = Prefix::parse(line);
    if (!prefix) throw badLine(path, number, line);
    prefixes.push_back(*prefix);
  }
  if (prefixes.empty()) throw std::runtime_error(path + ": holds no prefix");
  return prefixes;
}

bool holdsIp6Prefixes(const std::string& path) {
  std::ifstream file = open(path);
  std::string line;
  std::getline(file, line);
  return Kesh::Ip6Prefix::parse(line).has_value();
}

template std::vector<Kesh::Prefix> makePrefixes(std::size_t);
template std::vector<Kesh::Ip6Prefix> makePrefixes(std::size_t);
template std::vector<Kesh::Prefix> readPrefixes(const std::string&);
template std::vector<Kesh::Ip6Prefix> readPrefixes(const std::string&);

} // namespace bench
