// Runs any bytes as a command line, one argument a line, on the snapshot snapshot.json of a folder
// of their own: each ends with a status or with an error that has its caret inside the line. What
// leads out of the folder is left alone.
#include "command/CommandLine.h"
#include "command/grammar/UsageError.h"

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

using namespace command;

namespace {

[[noreturn]] void stop(const char* why, std::string_view text) {
  std::fprintf(stderr, "%s\n%.*s\n", why, static_cast<int>(text.size()), text.data());
  std::abort();
}

constexpr const char* snapshot = R"({
 "rovaSnapshot": 1,
 "vrfs": {
  "default": {
   "routingStatus": {
    "10.0.0.0/8": {"type": "ebgp", "fec": "0.1"},
    "192.0.2.0/31": {"type": "connected", "fec": "0.2", "preference": 0}
   },
   "routing6Status": {"2001:db8::/32": {"type": "static", "fec": "1.1"}},
   "routingConfig": {"routes": [
    {"prefix": "10.0.0.0/8", "vias": [{"hop": "192.0.2.1", "interface": "Ethernet1"}]}
   ]},
   "routing6Config": {"routes": []}
  },
  "red": {"id": 3, "routingConfig": {"routes": []}, "routing6Config": {"routes": []}}
 },
 "forwardingStatus": {
  "0.1": {"vias": [{"hop": "192.0.2.1", "interface": "Ethernet1"}]},
  "0.2": {"vias": [{"interface": "Ethernet1"}]}
 },
 "forwarding6Status": {"1.1": {"vias": [{"hop": "fe80::1", "interface": "Ethernet1"}]}},
 "allIntfConfig": {"Ethernet1": {}, "Loopback0": {}},
 "ipStatus": {"Ethernet1": {"vrf": "default", "primary": "192.0.2.0/31"}}
})";

/// The folder that the commands find themselves in, which goes with the program.
class Folder {
 public:
  Folder() {
    if (!mkdtemp(name_)) stop("no folder for the commands:", name_);
    std::filesystem::current_path(name_);
  }
  ~Folder() { std::filesystem::remove_all(name_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  /// As it was at first: the snapshot alone.
  void renew() const {
    for (const auto& entry : std::filesystem::directory_iterator(name_)) {
      std::filesystem::remove_all(entry.path());
    }
    std::ofstream("snapshot.json") << snapshot;
  }

 private:
  char name_[32] = "/tmp/rova-commands-XXXXXX";
};

/// Whether a word may be the name of a file elsewhere. A prefix has its slash behind a digit.
bool leadsOut(std::string_view text) {
  if (text.find("..") != text.npos) return true;
  for (std::size_t at = text.find('/'); at != text.npos; at = text.find('/', at + 1)) {
    const auto before = at == 0 ? '\0' : text[at - 1];
    if (!std::isxdigit(static_cast<unsigned char>(before)) && before != ':') return true;
  }
  return false;
}

/// "rova: what is wrong", and then the line with a caret in it, or what lists the options.
void checkUsage(std::string_view message) {
  if (!message.starts_with("rova: ")) stop("an error does not begin with the program:", message);
  const auto lastLine = message.substr(message.rfind('\n') + 1);
  if (lastLine.starts_with("  rova --help ")) return;
  const auto line = message.substr(0, message.rfind('\n'));
  const auto lineLength = line.size() - line.rfind('\n') - 1;
  if (!lastLine.ends_with('^') || lastLine.size() > lineLength + 2) {
    stop("the caret is not in its line:", message);
  }
}

std::vector<std::string> argumentsOf(std::string_view text) {
  std::vector<std::string> arguments{"--state", "snapshot.json"};
  while (!text.empty()) {
    const auto length = std::min(text.find('\n'), text.size());
    // What is behind a NUL nobody can hand to a program.
    arguments.emplace_back(std::string(text.substr(0, length)).c_str());
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  return arguments;
}

void run(const std::vector<std::string>& arguments) {
  std::vector<const char*> pointers;
  for (const auto& argument : arguments) pointers.push_back(argument.c_str());
  try {
    runCommandLine(pointers);
  } catch (const UsageError& error) {
    checkUsage(error.what());
  } catch (const std::logic_error& error) {
    stop("an error that no input may cause:", error.what());
  } catch (const std::exception&) {
    // The work failed, and says why.
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Folder folder;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (leadsOut(text)) return -1;
  folder.renew();
  run(argumentsOf(text));
  return 0;
}
