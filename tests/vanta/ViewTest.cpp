// The read view over every implementation: walks, detachment, corruption.
#include "support/UnorderedTable.h"
#include "vanta/Implementations.h"
#include "vanta/Records.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

using namespace tables;
using Lines = std::vector<std::string>;
using Tembra::CorruptionDetectedException;

/// A view whose events and debug lines are noted in one list.
struct Watched {
  explicit Watched(std::unique_ptr<RouteTable> table) : view(std::move(table), "routes") {
    view.debug().sinkIs([this](std::string_view line) { events.emplace_back(line); });
  }
  void noteCallbacks() {
    view.collectionReadyCallbackIs(
        [this](RouteView&, bool ready) { events.push_back(ready ? "ready" : "not ready"); });
    view.detachCallbackIs([this](RouteView&) { events.push_back("detached"); });
  }
  void handleCorruption() {
    view.corruptionHandlerIs([this](RouteView&, const std::string&) { ++handled; });
  }
  RouteView view;
  Lines events;
  int handled = 0;
};

template <class Implementation>
struct ViewTest : testing::Test {
  static auto table(std::uint64_t corruptAt = 0) {
    return Implementation::template make<Prefix, Route>(someRoutes(), corruptAt);
  }
};
TYPED_TEST_SUITE(ViewTest, Implementations);

TYPED_TEST(ViewTest, WalksFromAnyKey) {
  const RouteView view(this->table(), "routes");
  RouteView::IteratorConst it(view);
  Route record;
  ASSERT_TRUE(it.next(prefix("10.0.0.0/8"), record));
  EXPECT_EQ(record.key, prefix("11.0.0.0/8"));
  EXPECT_EQ(it.value().key, prefix("9.0.0.1/32")) << "the iterator's own copy changed";
  EXPECT_FALSE(it.next(prefix("0.0.0.0/0"), record));
}

TYPED_TEST(ViewTest, AWalkBeginsAtTheFirstKeyThatIsNotBeforeItsStart) {
  const RouteView view(this->table(), "routes");
  const struct {
    const char* start;
    std::size_t first; ///< in `sortedTexts`
  } cases[] = {{"0.0.0.0/32", 0},  {"9.0.0.1/32", 0},      {"9.0.0.2/32", 1},  {"10.1.1.0/32", 1},
               {"10.1.0.0/16", 2}, {"10.1.255.255/32", 2}, {"10.2.0.0/16", 3}, {"11.0.0.0/8", 4},
               {"12.0.0.0/8", 5},  {"0.0.0.0/0", 5}};
  for (const auto& [start, first] : cases) {
    const Lines expected(sortedTexts.begin() + static_cast<long>(first), sortedTexts.end());
    EXPECT_EQ(walkedFrom(view, start), expected) << start;
  }
  const RouteView ended(TypeParam::template make<Prefix, Route>({route("10.0.0.0/8")}));
  EXPECT_EQ(walkedFrom(ended, "11.0.0.0/8"), Lines());
}

TEST(UnorderedViewTest, IsWalkedAsAWholeWhateverTheStart) {
  const RouteView view(std::make_unique<support::UnorderedTable<Prefix, Route>>(someRoutes()));
  EXPECT_FALSE(view.inKeyOrder());
  const Lines entered = walked(view);
  EXPECT_EQ(entered.size(), someRoutes().size());
  for (const char* const start : {"10.1.0.0/16", "10.2.0.0/16", "255.0.0.0/8"}) {
    EXPECT_EQ(walkedFrom(view, start), entered) << start;
  }
}

TYPED_TEST(ViewTest, DetachingEmptiesTheViewAndTellsEveryone) {
  for (const bool notifying : {false, true}) {
    Watched watched(this->table());
    watched.noteCallbacks();
    watched.view.notifyingIs(notifying);
    const auto path = watched.view.implementation().rootPath().stringValue();
    watched.view.debug().enabledIs(1, true);
    watched.view.debug().enabledIs(5, true);
    watched.view.detach();
    EXPECT_EQ(watched.events,
              (Lines{"VantaMap::detach() " + path,
                     "VantaMap::collectionReadyIs() ready:0 notifying:" + std::to_string(notifying),
                     "not ready", "detached"}));
    watched.view.debug().enabledIs(5, false);
    EXPECT_EQ(walked(watched.view), Lines());
    bool found = true;
    EXPECT_EQ(*watched.view.safeLookup(prefix("10.0.0.0/8"), found, 0), Route());
    EXPECT_FALSE(found);
    EXPECT_EQ(watched.view.members(), 0u);
  }
}

/// The message of the implementation itself.
template <class Implementation>
std::string corruptionMessage() {
  const auto table = ViewTest<Implementation>::table(1);
  bool found = false;
  return messageOf<CorruptionDetectedException>(
      [&] { table->lookup(prefix("10.0.0.0/8"), found, 0); });
}

TYPED_TEST(ViewTest, CorruptionAtAnyReadOfAWalkEndsItWhenAHandlerIsSet) {
  for (std::size_t read = 1; read <= sortedTexts.size() + 1; ++read) {
    Watched watched(this->table(read));
    watched.noteCallbacks();
    watched.handleCorruption();
    const Lines before(sortedTexts.begin(), sortedTexts.begin() + static_cast<long>(read - 1));
    EXPECT_EQ(walked(watched.view), before) << read;
    EXPECT_EQ(watched.events, (Lines{"not ready", "detached"})) << read;
    EXPECT_EQ(watched.handled, 1) << read;
    EXPECT_EQ(walked(watched.view), Lines()) << "the table is not detached";
  }
}

// "10.2.0.0/16" is no member: finding the place behind it takes two reads.
TYPED_TEST(ViewTest, CorruptionAtAnyReadOfAWalkFromAKeyIsHandledAsInAnyWalk) {
  const Lines yielded[] = {{},
                           {},
                           {"10.0.0.0/8"},
                           {"10.0.0.0/8", "11.0.0.0/8"},
                           {sortedTexts.begin() + 3, sortedTexts.end()}};
  for (std::size_t read = 1; read <= std::size(yielded); ++read) {
    Watched watched(this->table(read)), raising(this->table(read));
    watched.noteCallbacks();
    watched.handleCorruption();
    EXPECT_EQ(walkedFrom(watched.view, "10.2.0.0/16"), yielded[read - 1]) << read;
    EXPECT_EQ(watched.events, (Lines{"not ready", "detached"})) << read;
    EXPECT_EQ(watched.handled, 1) << read;
    EXPECT_EQ(walkedFrom(watched.view, "10.2.0.0/16"), Lines()) << "the table is not detached";
    EXPECT_THROW(walkedFrom(raising.view, "10.2.0.0/16"), CorruptionDetectedException) << read;
  }
}

TYPED_TEST(ViewTest, CorruptionAtAnyReadOfAWalkReachesTheCallerWithoutAHandler) {
  for (std::size_t read = 1; read <= sortedTexts.size() + 1; ++read) {
    Watched watched(this->table(read));
    watched.noteCallbacks();
    watched.view.debug().enabledIs(1, true);
    const auto path = watched.view.implementation().rootPath().stringValue();
    const auto message = messageOf<CorruptionDetectedException>([&] { walked(watched.view); });
    EXPECT_EQ(message,
              "VantaMap::corruptionDetected() " + path + " " + corruptionMessage<TypeParam>());
    EXPECT_EQ(watched.events, Lines{message}) << "told on level one alone, and not detached";
  }
}

TYPED_TEST(ViewTest, ACorruptLookupGivesTheDefaultAndLeavesFoundAlone) {
  for (const bool before : {false, true}) {
    Watched watched(this->table(1));
    watched.noteCallbacks();
    watched.handleCorruption();
    bool found = before;
    EXPECT_EQ(watched.view.safeLookup(prefix("10.0.0.0/8"), found, 0),
              &watched.view.defaultValue());
    EXPECT_EQ(found, before);
    watched.view.safeLookup(prefix("10.0.0.0/8"), found, 0);
    EXPECT_FALSE(found) << "a detached table has nothing";
  }
}

TYPED_TEST(ViewTest, DetachingWithoutACallbackIsABadFunctionCall) {
  Watched watched(this->table(2)), corrupt(this->table(1));
  EXPECT_THROW(watched.view.detach(), std::bad_function_call);
  EXPECT_EQ(walked(watched.view), Lines());
  corrupt.handleCorruption();
  EXPECT_THROW(walked(corrupt.view), std::bad_function_call);
}

using support::TemporaryFolder;

/// The folder for records of corruption, for the life of the object.
struct CorruptionFolder {
  explicit CorruptionFolder(const std::filesystem::path& path) {
    Vanta::Util::corruptionFolderIs(path);
  }
  ~CorruptionFolder() { Vanta::Util::corruptionFolderIs(""); }
};

TYPED_TEST(ViewTest, AReaderGoesOnWhereNoRecordOfCorruptionCanBeLeft) {
  const TemporaryFolder folder;
  for (const auto& path : {folder.path / "missing", std::filesystem::path("/dev/null")}) {
    const CorruptionFolder set(path);
    Watched watched(this->table(3));
    watched.noteCallbacks();
    watched.handleCorruption();
    EXPECT_EQ(walked(watched.view), Lines({sortedTexts[0], sortedTexts[1]})) << path;
    EXPECT_EQ(watched.handled, 1) << path;
  }
}

TYPED_TEST(ViewTest, WithoutAFolderCorruptionIsADebugLineOfLevelOne) {
  for (const unsigned level : {0u, 1u, 2u}) {
    Watched watched(this->table(1));
    watched.view.detachCallbackIs([](RouteView&) {});
    watched.handleCorruption();
    watched.view.debug().enabledIs(level, true);
    walked(watched.view);
    const bool told =
        std::any_of(watched.events.begin(), watched.events.end(), [](const std::string& line) {
          return line.starts_with("corruption of ") &&
                 line.ends_with(": " + corruptionMessage<TypeParam>());
        });
    EXPECT_EQ(told, level == 1) << level;
  }
}

// The view is empty by the time when its callbacks look at it, and they may end it once more.
TYPED_TEST(ViewTest, CallbacksOfACorruptionFindTheViewEmpty) {
  Watched watched(this->table(2));
  int depth = 0;
  watched.view.detachCallbackIs([&](RouteView& view) {
    EXPECT_EQ(walked(view), Lines());
    if (++depth < 3) view.detach();
  });
  watched.view.corruptionHandlerIs([&](RouteView& view, const std::string& message) {
    ++watched.handled;
    EXPECT_EQ(message, corruptionMessage<TypeParam>());
    EXPECT_EQ(view.members(), 0u);
  });
  EXPECT_EQ(walked(watched.view), Lines{sortedTexts[0]});
  EXPECT_EQ(depth, 3);
  EXPECT_EQ(watched.handled, 1);
}

/// FECs of `i` vias under the identifiers `i` from 1 on.
std::vector<Fec> someFecs() {
  std::vector<Fec> fecs;
  for (std::uint32_t i = 1; i <= 4; ++i) {
    Fec& fec = fecs.emplace_back(FecId(i));
    for (std::uint32_t via = 0; via < i; ++via) fec.viaAppend({});
  }
  return fecs;
}

TYPED_TEST(ViewTest, CorruptionEndsAWalkOverRecordsOfAnyLength) {
  for (std::size_t read = 1; read <= 5; ++read) {
    Vanta::VantaMap<FecId, Fec> view(TypeParam::template make<FecId, Fec>(someFecs(), read));
    int handled = 0;
    view.detachCallbackIs([](auto&) {});
    view.corruptionHandlerIs([&](auto&, const std::string&) { ++handled; });
    std::vector<std::uint32_t> counts;
    for (typename decltype(view)::IteratorConst it(view); it; it.next()) {
      counts.push_back(it.value().viaCount);
    }
    EXPECT_EQ(counts.size(), read - 1);
    EXPECT_EQ(handled, 1);
    bool found = true;
    EXPECT_EQ(view.safeLookup(FecId(1), found, 0)->viaCount, 0u);
    EXPECT_FALSE(found);
  }
}

TEST(MemoryViewTest, ARecordThatCountsTooManyViasIsReadToItsEnd) {
  std::vector<Fec> fecs = someFecs();
  for (std::uint32_t i = 4; i < Fec::maxVias; ++i) fecs[3].viaAppend({});
  fecs[3].viaCount = 0xffffffff;
  Vanta::VantaMap<FecId, Fec> view(InMemory::make<FecId, Fec>(fecs));
  bool found = false;
  EXPECT_EQ(view.safeLookup(FecId(4), found, 0)->viaCount, 0xffffffffu);
  EXPECT_TRUE(found);
  EXPECT_EQ(view.safeLookup(FecId(3), found, 0)->viaCount, 3u);
  EXPECT_EQ(view.members(), 4u);
}

TYPED_TEST(ViewTest, CorruptionLeavesAFileWhenAFolderIsSet) {
  const TemporaryFolder folder;
  const CorruptionFolder set(folder.path);
  Watched watched(this->table(3));
  watched.noteCallbacks();
  watched.handleCorruption();
  walked(watched.view);
  Lines contents;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path)) {
    std::getline(std::ifstream(entry.path()), contents.emplace_back());
  }
  ASSERT_EQ(contents.size(), 1u);
  EXPECT_NE(contents[0].find(corruptionMessage<TypeParam>()), std::string::npos) << contents[0];
}

} // namespace
