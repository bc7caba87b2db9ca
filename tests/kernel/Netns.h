// A network namespace for one test, made and removed by the system's own command.
#pragma once

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <unistd.h>

namespace kernel_test {

/// What a command writes to standard output.
inline std::string outputOf(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string text;
  std::array<char, 4096> part{};
  while (const std::size_t size = std::fread(part.data(), 1, part.size(), pipe.get())) {
    text.append(part.data(), size);
  }
  return text;
}

inline bool succeeds(const std::string& command) { return std::system(command.c_str()) == 0; }

/// Tests in a namespace of their own, with two connected pairs of interfaces: eth1, eth2 and their
/// peers peer1, peer2. Skipped without the right to make one.
class NetnsTest : public testing::Test {
 protected:
  static constexpr const char* commonName = "rova-test-";

  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "network namespaces need root";
    removeLeftOvers();
    name = commonName + std::to_string(getpid());
    if (!succeeds("ip netns add " + name + " 2>/dev/null")) {
      name.clear();
      GTEST_SKIP() << "this machine makes no network namespaces";
    }
    run("link set lo up");
    if (!tries("link add eth1 type veth peer name peer1"))
      GTEST_SKIP() << "no veth interfaces here";
    run("link add eth2 type veth peer name peer2");
    for (const char* const link : {"eth1", "peer1", "eth2", "peer2"}) {
      run(std::string("link set ") + link + " up addrgenmode none");
    }
    run("addr add 10.1.0.1/24 dev eth1");
    run("addr add 10.2.0.1/24 dev eth2");
    run("addr add fd01::1/64 dev eth1 nodad");
  }

  void TearDown() override { EXPECT_TRUE(name.empty() || succeeds("ip netns del " + name)); }

  /// Runs `ip WORDS` in the namespace.
  void run(const std::string& words) const { ASSERT_TRUE(succeeds(ip() + words)) << words; }
  bool tries(const std::string& words) const { return succeeds(ip() + words + " 2>/dev/null"); }
  nlohmann::json ask(const std::string& words) const {
    return nlohmann::json::parse(outputOf(ip() + "-j -N " + words));
  }
  /// Runs a shell command in the namespace.
  void runInside(const std::string& command) const {
    ASSERT_TRUE(succeeds("ip netns exec " + name + " sh -c '" + command + "'")) << command;
  }

  std::string name;

 private:
  std::string ip() const { return "ip -n " + name + " "; }

  /// Removes the namespaces of test processes that ended without doing so.
  static void removeLeftOvers() {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/run/netns", error)) {
      const std::string left = entry.path().filename();
      if (!left.starts_with(commonName)) continue;
      const std::string owner = "/proc/" + left.substr(std::string(commonName).size());
      if (!std::filesystem::exists(owner)) succeeds("ip netns del " + left + " 2>/dev/null");
    }
  }
};

} // namespace kernel_test
