// What every implementation of a table promises behind the seam.
#include "vanta/Implementations.h"
#include "vanta/Records.h"

namespace {

using namespace tables;
using Tembra::NoPermissionException;
using Tembra::UnimplementedException;

template <class Implementation>
struct SeamTest : testing::Test {
  std::unique_ptr<RouteTable> table = Implementation::template make<Prefix, Route>(someRoutes());
  std::unique_ptr<RouteTable> empty = Implementation::template make<Prefix, Route>({});

  std::vector<std::string> keys() {
    std::vector<std::string> keys;
    Route record;
    Vanta::IterHint hint = 0;
    for (bool more = table->first(&record, hint); more;
         more = table->next(record.key, &record, hint)) {
      keys.push_back(record.key.stringValue().str());
    }
    return keys;
  }
};
TYPED_TEST_SUITE(SeamTest, Implementations);

TYPED_TEST(SeamTest, WalksInKeyOrderFromAnyKeyAndWithoutAHint) {
  EXPECT_EQ(this->keys(), sortedTexts);
  Route record;
  Vanta::IterHint none = 0;
  ASSERT_TRUE(this->table->first(&record, none));
  for (std::size_t i = 1; i < sortedTexts.size(); ++i) {
    Vanta::IterHint useless = 12345;
    ASSERT_TRUE(this->table->next(record.key, &record, useless));
    EXPECT_EQ(record.key.stringValue().str(), sortedTexts[i]);
  }
  ASSERT_TRUE(this->table->next(prefix("10.200.0.0/16"), &record, none));
  EXPECT_EQ(record.key, prefix("10.0.0.0/8")) << "the key asked for is not there";
  EXPECT_FALSE(this->table->next(prefix("0.0.0.0/0"), &record, none));
  EXPECT_FALSE(this->empty->first(&record, none));
  EXPECT_FALSE(this->empty->next(prefix("10.0.0.0/8"), &record, none));
}

TYPED_TEST(SeamTest, LooksUp) {
  for (const Route& expected : someRoutes()) {
    bool found = false;
    EXPECT_EQ(*this->table->lookup(expected.key, found, 0), expected);
    EXPECT_TRUE(found);
    EXPECT_EQ(*this->table->directLookup(expected.key, found, 0), expected);
  }
  for (const char* const missing :
       {"10.0.0.0/9", "10.0.0.0/7", "8.0.0.0/8", "255.255.255.255/32"}) {
    bool found = true;
    EXPECT_EQ(*this->table->lookup(prefix(missing), found, 0), Route()) << missing;
    EXPECT_FALSE(found) << missing;
  }
  EXPECT_EQ(this->table->members(), someRoutes().size());
}

TYPED_TEST(SeamTest, RefusesEveryOperationThatIsNotForReaders) {
  RouteTable& refusing = *this->table;
  const Route record = route("10.0.0.0/8");
  const struct {
    std::function<void()> call;
    const char* message;
  } writes[] = {
      {[&] { refusing.validate(); }, "validate to read-only Vanta table"},
      {[&] { refusing.validateFiles(); }, "validateFiles to read-only Vanta table"},
      {[&] { refusing.cleanup(); }, "cleanup to read-only Vanta table"},
      {[&] { refusing.write(record, true); }, "write to read-only Vanta table"},
      {[&] { refusing.remove(record.key, record); }, "remove to read-only Vanta table"},
      {[&] { refusing.directWrite(record.key); }, "write to read-only Vanta table"},
      {[&] { refusing.directUpdate(record.key); }, "write to read-only Vanta table"},
      {[&] { refusing.directCommit(); }, "write to read-only Vanta table"},
  };
  for (const auto& [call, message] : writes)
    EXPECT_EQ(messageOf<NoPermissionException>(call), message);
  const std::remove_cvref_t<decltype(writes[0])> unimplemented[] = {
      {[&] { refusing.writerCounters(); }, "writerCounters() not implemented"},
      {[&] { refusing.clientQuiesced("x"); }, "clientQuiesced() not implemented"},
      {[&] { refusing.validateVersionAnchor(); }, "validateVersionAnchor() not implemented"},
      {[&] { refusing.getCacheVersionAnchor(); }, "getCacheVersionAnchor() not implemented"},
  };
  for (const auto& [call, message] : unimplemented) {
    EXPECT_EQ(messageOf<UnimplementedException>(call), message);
  }
  EXPECT_EQ(this->keys(), sortedTexts);
}

TYPED_TEST(SeamTest, RecordsOfAnyLengthComeBackWhole) {
  const std::uint32_t counts[] = {512, 0, 1, 511, 2};
  std::vector<Fec> records;
  for (const std::uint32_t count : counts) {
    Fec& fec = records.emplace_back(FecId(1000 - count));
    fec.backupViaIndex = count / 2;
    for (std::uint32_t i = 0; i < count; ++i) {
      Via via;
      via.hop = Kesh::IpAddr::fromHost(count << 16 | i);
      via.weight = i;
      fec.viaAppend(via);
    }
  }
  const auto fecs = TypeParam::template make<FecId, Fec>(records);
  const auto expectWhole = [](const Fec& read, const Fec& written) {
    EXPECT_EQ(read.key, written.key);
    EXPECT_EQ(read.backupViaIndex, written.backupViaIndex);
    ASSERT_EQ(read.viaCount, written.viaCount);
    for (std::uint32_t i = 0; i < read.viaCount; ++i) {
      const Vanta::Fib::ViaIndex at(i);
      ASSERT_EQ(read.via(at).hop, written.via(at).hop) << i;
      ASSERT_EQ(read.via(at).weight, written.via(at).weight) << i;
    }
  };
  for (const Fec& written : records) {
    bool found = false;
    expectWhole(*fecs->lookup(written.key, found, 0), written);
    EXPECT_TRUE(found);
  }
  Fec read;
  Vanta::IterHint hint = 0;
  std::size_t members = 0;
  for (bool more = fecs->first(&read, hint); more; more = fecs->next(read.key, &read, hint)) {
    for (const Fec& written : records) {
      if (written.key == read.key) expectWhole(read, written);
    }
    ++members;
  }
  EXPECT_EQ(members, std::size(counts));
}

} // namespace
