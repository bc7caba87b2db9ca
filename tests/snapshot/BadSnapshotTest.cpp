// What a snapshot must not hold, each with the one line that its author gets to see. Most of them
// stand in bad.txt; here are those that no single line of a file can show.
#include "sources/snapshot/Snapshot.h"
#include "support/Expect.h"

#include <filesystem>
#include <fstream>

namespace {

void expectRefusal(const std::string& snapshot, const std::string& expected) {
  const auto message = support::messageOf<sources::SourceError>(
      [&] { sources::snapshot::loadText(snapshot, "leaf1"); });
  EXPECT_EQ(message, "leaf1: " + expected) << snapshot.substr(0, 300);
  EXPECT_EQ(message.find('\n'), message.npos) << snapshot.substr(0, 300);
}

TEST(BadSnapshot, IsRefusedWithTheLineOfTheFile) {
  std::ifstream file(std::filesystem::path(ROVA_SAMPLES).parent_path() / "bad.txt");
  int count = 0;
  for (std::string snapshot, message; std::getline(file, snapshot);) {
    if (snapshot.empty() || snapshot[0] == '#') continue;
    ASSERT_TRUE(std::getline(file, message));
    expectRefusal(snapshot, message);
    ++count;
  }
  EXPECT_GT(count, 100);
}

TEST(BadSnapshot, ThatNoLineCanShowIsRefused) {
  const std::string start = R"({"rovaSnapshot": 1, )";
  std::string vias = "{}";
  for (int i = 1; i < 513; ++i) vias += ", {}";
  const struct {
    std::string snapshot, message;
  } cases[] = {
      {"", "line 1, column 1: found nothing, expected a snapshot"},
      {" \n ", "line 1, column 1: found nothing, expected a snapshot"},
      {start + "\n \"a", "line 2, column 4: the snapshot ends early, inside the text that begins "
                         "at line 2, column 2"},
      {start + "\n \"b\xc3", "line 2, column 5: the snapshot ends early, inside the text that "
                             "begins at line 2, column 2"},
      {start + "\n \"vrfs\": {\n", "line 3, column 1: the snapshot ends early, inside the object "
                                   "that begins at line 2, column 10"},
      {"{\"rova\nSnapshot\": 1}", "line 1, column 7: found a control character in a text, expected "
                                  "an escape such as \\n"},
      {start + "\n \"\xff\": 2}",
       "line 2, column 3: found bytes that are not UTF-8, expected UTF-8"},
      {"{\"rovaSnapshot\": 1\n \"vrfs\": {}}",
       "line 2, column 2: found broken JSON at or before this place, expected values with commas, "
       "colons, quotes and matching brackets"},
      {start + R"("forwardingStatus": {"0.1": {"vias": [)" + vias + "]}}}",
       "$.forwardingStatus[\"0.1\"].vias[512]: found one via more, expected at most 512 vias"},
      {start + R"("vrfs": {"default": {"routingConfig": {"routes": [{"prefix": "10.0.0.0/8", )" +
           "\"vias\": [" + vias + "]}]}}}}",
       "$.vrfs.default.routingConfig.routes[0]: found 513 vias, expected at most 512"},
  };
  for (const auto& [snapshot, message] : cases) expectRefusal(snapshot, message);
}

} // namespace
