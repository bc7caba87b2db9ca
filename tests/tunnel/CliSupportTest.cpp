// Texts and models of tunnels, of whole records and of those that lack parts or are damaged.
#include "tunnel/CliSupport.h"
#include "scrivo/Capture.h"
#include "support/Expect.h"

#include <gtest/gtest.h>

namespace {

using namespace Tunnel::CliSupport;
using Kesh::MplsLabel;
using Kesh::MplsLabelOperation;

MplsLabelOperation stack(std::initializer_list<std::uint32_t> labels) {
  MplsLabelOperation operation;
  for (const std::uint32_t label : labels) operation.labelAppend(MplsLabel(label));
  return operation;
}

/// What `print(printer, inModel)` writes as text, as a model, and as a model that is not to have
/// it.
struct Written {
  template <class Print>
  explicit Written(Print print)
      : text(capture(scrivo::textFormat, [&](auto& printer) { print(printer, true); })),
        model(capture(scrivo::modelFormat, [&](auto& printer) { print(printer, true); })),
        outside(capture(scrivo::modelFormat, [&](auto& printer) { print(printer, false); })) {}
  std::string text, model, outside;
};

TEST(TunnelInfo, LeavesOutAnEndpointThatIsNotKnown) {
  const struct {
    std::uint64_t kind;
    const char* endpoint;
    const char* text;
    const char* model;
  } cases[] = {
      {3, "10.0.0.9/32", "LDP tunnel index 3, endpoint 10.0.0.9/32",
       R"("tunnelDescriptor":{"tunnelType":"LDP","tunnelIndex":3,"tunnelEndpoint":"10.0.0.9/32"})"},
      {7, "", "SR tunnel index 3", R"("tunnelDescriptor":{"tunnelType":"SR","tunnelIndex":3})"},
      {4, "", "tunnel tunnel index 3", // a kind that has no word
       R"("tunnelDescriptor":{"tunnelType":"tunnel","tunnelIndex":3})"},
  };
  for (const auto& [kind, endpoint, text, model] : cases) {
    const Tunnel::TunnelTable::TunnelId id(kind << 44 | 3);
    const auto info = getCachedTunnelInfo(id, endpoint);
    const Written written(
        [&](scrivo::Printer& printer, bool inModel) { printTunnelInfo(printer, info, inModel); });
    EXPECT_EQ(written.text, text);
    EXPECT_EQ(written.model, model);
    EXPECT_EQ(written.outside, "");
  }
}

TEST(TunnelViaInfo, ShowsWhatThereIs) {
  const auto labels = stack({100, 200});
  const struct {
    TunnelViaText via;
    const char* text;
    const char* model;
  } cases[] = {
      {{"10.1.0.1", "Ethernet1", "to spine", labels},
       "via 10.1.0.1, Ethernet1 to spine label 100 200",
       R"("nexthopAddr":"10.1.0.1","interface":"Ethernet1","interfaceDescription":"to spine",)"
       R"("labelStack":[100,200])"},
      {{"10.1.0.1", "", "", {}}, "via 10.1.0.1", R"("nexthopAddr":"10.1.0.1")"},
      {{"", "Ethernet1", "", {}}, "via Ethernet1", R"("interface":"Ethernet1")"},
      {{"", "", "", {}}, "via", ""},
      {{"", "", "", stack({0})}, "via label exp-null-v4(0)", R"("labelStack":[0])"},
      {{"10.1.0.1", "Ethernet1", "", {}, true},
       "is directly connected, Ethernet1",
       R"("interface":"Ethernet1")"},
      {{"10.1.0.1", "", "", {}, true}, "is directly connected", ""},
  };
  for (const auto& [via, text, model] : cases) {
    const Written written([&, &shown = via](scrivo::Printer& printer, bool inModel) {
      printTunnelViaInfo(printer, inModel, shown);
    });
    EXPECT_EQ(written.text, text);
    EXPECT_EQ(written.model, model) << text;
    EXPECT_EQ(written.outside, "") << text;
  }
}

TEST(LabelStack, PutsTheLabelAboveTheStackAndRefusesADamagedOne) {
  const auto print = [](MplsLabel label, const MplsLabelOperation& operation) {
    return Written([&](scrivo::Printer& printer, bool inModel) {
      maybeAddLabelStackToOutput(printer, label, operation, inModel, "labels");
    });
  };
  EXPECT_EQ(print({}, {}).text + print({}, {}).model, "");
  const auto all = print(MplsLabel(3), stack({16, 0xfffff}));
  EXPECT_EQ(all.text, " label imp-null(3) 16 1048575");
  EXPECT_EQ(all.model, R"("labels":[3,16,1048575])");
  EXPECT_EQ(all.outside, "");
  MplsLabelOperation damaged = stack({16});
  constexpr std::size_t placeOfSize = 4;
  reinterpret_cast<unsigned char*>(&damaged)[placeOfSize] = 200;
  ASSERT_EQ(damaged.stackSize(), 200);
  for (const unsigned format : {scrivo::textFormat, scrivo::modelFormat}) {
    EXPECT_EQ(support::messageOf<Lumo::RangeException>([&] {
                Sink sink;
                scrivo::Printer printer(sink.fd(), format);
                maybeAddLabelStackToOutput(printer, {}, damaged, true, "labels");
              }),
              "MplsStackEntryIndex::value < MplsStackEntryIndex::min or > "
              "MplsStackEntryIndex::max not allowed");
  }
}

TEST(TunnelEncapInfo, LeavesOutZerosAndTunnelsThatWereNotFound) {
  CachedStaticIntfTunnelInfo info;
  const auto print = [&] {
    return Written([&](scrivo::Printer& printer, bool inModel) {
      maybePrintTunnelEncapInfo(printer, info, inModel);
    });
  };
  EXPECT_TRUE(!info);
  EXPECT_EQ(print().text + print().model, "");
  info.tunnelTypeText = "static interface";
  info.tunnelIndexPart = 5;
  info.encapTypeText = "GRE";
  info.destinationText = "10.9.0.1";
  info.sourceText = "10.9.0.2";
  EXPECT_FALSE(!info);
  const std::string text = ", GRE, destination 10.9.0.1, source 10.9.0.2";
  const std::string model =
      R"("tunnelEncap":{"tunnelType":"static interface","tunnelIndex":5,"encapType":"GRE",)"
      R"("destination":"10.9.0.1","source":"10.9.0.2")";
  EXPECT_EQ(print().text, text);
  EXPECT_EQ(print().model, model + "}");
  info.greKeyField = 7;
  info.encapByte0 = 64;
  info.encapByte1 = 32;
  EXPECT_EQ(print().text, text + ", key 7, ttl 64, tos 32");
  EXPECT_EQ(print().model, model + R"(,"key":7,"ttl":64,"tos":32})");
  EXPECT_EQ(print().outside, "");
}

} // namespace
