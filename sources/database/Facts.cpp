#include "sources/database/Facts.h"

#include <chrono>
#include <ctime>
#include <fstream>
#include <map>
#include <sys/stat.h>

namespace sources::database {

namespace {

struct Text {
  const char* key;
  std::string Facts::*member;
};
constexpr Text textFacts[] = {
    {"source", &Facts::source},
    {"boot", &Facts::boot},
    {"network", &Facts::network},
    {"reason", &Facts::reason},
};

struct Number {
  const char* key;
  std::int64_t Facts::*member;
};
constexpr Number numberFacts[] = {
    {"agent", &Facts::agent},
    {"agent_since", &Facts::agentSince},
    {"whole_since", &Facts::wholeSince},
    {"changed", &Facts::changed},
    {"synchronised", &Facts::synchronised},
    {"stopped", &Facts::stopped},
};

} // namespace

Facts readFacts(Connection& connection) {
  Facts facts;
  Statement select(connection, "select key, value from meta");
  while (select.step()) {
    const auto found = select.text("key");
    for (const auto& [key, member] : textFacts) {
      if (found == key) facts.*member = select.text(key);
    }
    for (const auto& [key, member] : numberFacts) {
      if (found == key) facts.*member = select.integer(key);
    }
  }
  return facts;
}

void writeFacts(Connection& connection, const Facts& facts) {
  Statement insert(connection, "insert or replace into meta values (?, ?)");
  for (const auto& [key, member] : textFacts) insert.bindText(key).bindText(facts.*member).run();
  for (const auto& [key, member] : numberFacts) insert.bindText(key).bind(facts.*member).run();
}

std::string bootId() {
  std::string id;
  std::getline(std::ifstream("/proc/sys/kernel/random/boot_id"), id);
  return id;
}

std::string networkNamespace() {
  struct stat status {};
  if (stat("/proc/self/ns/net", &status) != 0) return {};
  return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

std::int64_t timeNow() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

std::string timeText(std::int64_t milliseconds) {
  const std::time_t seconds = milliseconds / 1000;
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  char text[sizeof "+YYYYYYYYYY-MM-DDThh:mm:ssZ"];
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
  return text;
}

} // namespace sources::database
