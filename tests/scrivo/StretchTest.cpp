// Stretches: what is printed once and put again.
#include "Capture.h"
#include "lumo/Assert.h"

#include <gtest/gtest.h>

namespace {

using scrivo::Printer;
using scrivo::Stretch;

/// A list of two entries, the second on a line of its own.
void printVias(Printer& printer) {
  scrivo::StringAttrInfo hop(printer, "hop");
  printer.startList("vias");
  for (const char* const text : {"10.0.0.1", "10.0.0.2"}) {
    hop.setValue(text);
    printer.startListEntry();
    if (text[7] == '2') printer.addFrills("\n");
    if (text[7] == '2') printer.addIndent(1);
    printer.addAttributes("via %s", 1, hop.getArg());
    printer.endListEntry();
  }
  printer.endList();
  printer.addFrills("\n");
}

/// Entries whose vias are printed by `print(printer, n)`, the n-th with a margin of n columns.
template <class Print>
std::string entries(unsigned format, unsigned count, Print print) {
  return capture(format, [&](Printer& printer) {
    scrivo::UintAttrInfo number(printer, "number");
    printer.start();
    printer.startDict("entries");
    for (unsigned n = 1; n <= count; ++n) {
      number.setValue(n);
      printer.startDictEntry(number);
      printer.addAttributes("%u ", 1, number.getArg());
      printer.marginIs(n);
      print(printer, n);
      printer.endDictEntry();
    }
    printer.endDict();
    printer.end();
  });
}

TEST(Stretch, IsPrintedOnceAndPutWithTheMarginsOfEachLine) {
  for (const unsigned format : {scrivo::textFormat, scrivo::modelFormat}) {
    Stretch stretch;
    int prints = 0;
    const auto shared = entries(format, 3, [&](Printer& printer, unsigned) {
      printer.addStretch(stretch, [&] { printVias(printer), ++prints; });
    });
    EXPECT_EQ(prints, 1);
    EXPECT_EQ(shared, entries(format, 3, [](Printer& printer, unsigned) { printVias(printer); }));
  }
  Stretch stretch;
  EXPECT_EQ(entries(scrivo::textFormat, 2,
                    [&](Printer& printer, unsigned) {
                      printer.addStretch(stretch, [&] { printVias(printer); });
                    }),
            "1 via 10.0.0.1\n  via 10.0.0.2\n2 via 10.0.0.1\n   via 10.0.0.2\n");
}

TEST(Stretch, OutlastsFlushesInsideIt) {
  const std::string big(40'000, 'x'); // the buffer has 65,536 bytes
  const auto print = [&](Printer& printer) {
    for (int i = 0; i < 5; ++i) {
      printer.addFrills("%s\n", big);
      printer.addIndent(1'000);
    }
    printer.ioflush();
    printer.addFrills("end\n");
  };
  Stretch stretch;
  const auto shared = capture(scrivo::textFormat, [&](Printer& printer) {
    for (int i = 0; i < 3; ++i) printer.addStretch(stretch, [&] { print(printer); });
  });
  const auto plain = capture(scrivo::textFormat, [&](Printer& printer) {
    for (int i = 0; i < 3; ++i) print(printer);
  });
  EXPECT_TRUE(shared == plain) << shared.size() << " and " << plain.size() << " bytes";
}

TEST(Stretch, ThatRaisesIsNotKept) {
  Stretch stretch;
  const auto text = capture(scrivo::textFormat, [&](Printer& printer) {
    const auto raise = [&] {
      printer.addFrills("half");
      throw std::runtime_error("no more");
    };
    EXPECT_THROW(printer.addStretch(stretch, raise), std::runtime_error);
    EXPECT_FALSE(stretch.isKept());
    printer.addStretch(stretch, [&] { printer.addFrills(" whole"); });
    printer.addStretch(stretch, [&] { ADD_FAILURE(); });
  });
  EXPECT_EQ(text, "half whole whole");
}

TEST(Stretch, InsideAnotherIsPartOfIt) {
  Stretch inner, outer;
  const auto print = [&](Printer& printer) {
    printer.addStretch(outer, [&] {
      printer.addFrills("<");
      printer.addStretch(inner, [&] { printer.addFrills("i"), printer.addIndent(); });
      printer.addFrills(">");
    });
  };
  EXPECT_EQ(capture(scrivo::textFormat,
                    [&](Printer& printer) {
                      printer.marginIs(1);
                      print(printer);
                      EXPECT_FALSE(inner.isKept());
                      printer.marginIs(3);
                      print(printer);
                      printer.addStretch(inner, [&] { printer.addFrills("j"); });
                      outer.forget();
                      print(printer);
                      print(printer);
                    }),
            "<i ><i   >j<j><j>");
}

TEST(StretchDeathTest, BelongsWhereItWasPrinted) {
  const auto put = [](auto&& first, auto&& second) {
    return [=] {
      capture(scrivo::modelFormat, [&](Printer& printer) {
        Stretch stretch;
        scrivo::UintAttrInfo number(printer, "number");
        number.setValue(1);
        const auto add = [&] {
          printer.addStretch(stretch, [&] { printer.addArgs("", number.getArg()); });
        };
        printer.start();
        first(printer, add);
        second(printer, add, stretch);
      });
    };
  };
  const auto plain = [](Printer&, const auto& add) { add(); };
  EXPECT_DEATH(put(plain,
                   [](Printer& printer, const auto& add, Stretch&) {
                     printer.startDict("inner");
                     add();
                   })(),
               "a stretch is put where one like it was printed");
  EXPECT_DEATH(put(plain, [](Printer&, const auto& add, Stretch&) { add(); })(),
               "a stretch is put where one like it was printed")
      << "a comma comes before it now";
  EXPECT_DEATH(put(plain,
                   [](Printer&, const auto&, Stretch& stretch) {
                     capture(scrivo::modelFormat,
                             [&](Printer& other) { other.addStretch(stretch, [] {}); });
                   })(),
               "a stretch is put by the printer that printed it");
  EXPECT_DEATH(put(plain,
                   [](Printer& printer, const auto&, Stretch& stretch) {
                     stretch.forget();
                     printer.addStretch(stretch, [&] { printer.startDict("open"); });
                   })(),
               "a stretch ends in the level that it begins in");
}

} // namespace
