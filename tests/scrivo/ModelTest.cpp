#include "Capture.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

using scrivo::Printer;

struct Infos {
  explicit Infos(Printer& p)
      : name(p, "name"),
        size(p, "size"),
        up(p, "up"),
        bytes(p, "bytes"),
        load(p, "load"),
        key(p, "", true),
        bare(p, "") {
    name.setValue("a");
    size.setValue(-2);
    up.setValue(true);
    bytes.setValue(7ULL);
    load.setValue(0.5);
    key.setValue(64);
    bare.setValue(9u);
  }
  scrivo::StringAttrInfo name;
  scrivo::IntAttrInfo size;
  scrivo::BoolAttrInfo up;
  scrivo::Uint64AttrInfo bytes;
  scrivo::DoubleAttrInfo load;
  scrivo::IntAttrInfo key;
  scrivo::UintAttrInfo bare;
};

struct Case {
  const char* what;
  std::function<void(Printer&, Infos&)> walk;
  const char* model;
  const char* text;
};

const Case cases[] = {
    {"nothing", [](Printer&, Infos&) {}, "", ""},
    {"a fragment of attributes",
     [](Printer& p, Infos& i) {
       p.addAttributes("%s is %d, %s\n", 3, i.name.getArg(), i.size.getArg(), i.up.getArg());
       p.addArgs("%llu %.1f\n", i.bytes.getArg(), i.load.getArg());
     },
     R"("name":"a","size":-2,"up":true,"bytes":7,"load":0.5)", "a is -2, True\n7 0.5\n"},
    {"more words than slots",
     [](Printer& p, Infos& i) { p.addAttributes("%s", 2, i.name.getArg(), i.size.getArg()); },
     R"("name":"a","size":-2)", "a"},
    {"entries of a dictionary",
     [](Printer& p, Infos& i) {
       p.start();
       p.startDict("groups");
       for (const char* const name : {"g1", "g2"}) {
         i.name.setValue(name);
         p.startDictEntry(i.name);
         p.addAttributes("%s\n", 1, i.name.getArg());
         p.endDictEntry();
       }
       p.endDict();
       p.addAttributes("", 1, i.size.getArg()); // for the model alone
       p.addFrills("%d lines\n", 2);            // for the text alone
       p.end();
     },
     "{\"groups\":{\n\"g1\":{\"name\":\"g1\"},\n\"g2\":{\"name\":\"g2\"}},\"size\":-2}\n",
     "g1\ng2\n2 lines\n"},
    {"simple entries",
     [](Printer& p, Infos& i) {
       p.startDict("sizes");
       p.startSimpleDictEntry(i.key);
       p.addAttributes("%5d %u\n", 2, i.key.getArg(), i.bare.getArg());
       p.endSimpleDictEntry();
       i.key.setValue(-1);
       p.startSimpleDictEntry(i.key);
       p.endSimpleDictEntry();
       p.endDict();
     },
     R"("sizes":{"64":9,"-1":null})", "   64 9\n"},
    {"entry names are strings",
     [](Printer& p, Infos& i) {
       p.startDict("d");
       p.startSimpleDictEntry(i.up);
       p.endSimpleDictEntry();
       p.startSimpleDictEntry(i.bare);
       p.endSimpleDictEntry();
       i.name.setValue("a\"b");
       p.startSimpleDictEntry(i.name);
       p.endSimpleDictEntry();
       p.endDict();
     },
     R"("d":{"true":null,"9":null,"a\"b":null})", ""},
    {"lists and submodels",
     [](Printer& p, Infos& i) {
       p.startList("vias");
       p.startListEntry();
       p.addAttributes("%s", 1, i.name.getArg());
       p.startList("labels");
       p.addAttributes(" %u", 1, i.bare.getArg());
       p.addAttributes(" %u", 1, i.bare.getArg());
       p.endList();
       p.endListEntry();
       p.startListEntry();
       p.endListEntry();
       p.endList();
       p.startSubmodel("l2Via");
       p.addAttributes("", 1, i.size.getArg());
       p.endSubmodel();
       p.startList("none");
       p.endList();
     },
     R"("vias":[{"name":"a","labels":[9,9]},{}],"l2Via":{"size":-2},"none":[])", "a 9 9"},
    {"attributes without a name where names are wanted",
     [](Printer& p, Infos& i) { p.addAttributes("%u %d", 2, i.bare.getArg(), i.key.getArg()); }, "",
     "9 64"},
    {"names that need escapes",
     [](Printer& p, Infos&) {
       scrivo::IntAttrInfo odd(p, "a\"b");
       odd.setValue(1);
       p.startDict("c\\d");
       p.addAttributes("", 1, odd.getArg());
       p.endDict();
     },
     R"("c\\d":{"a\"b":1})", ""},
};

TEST(Model, OneWalkMakesBothOutputs) {
  for (const Case& test : cases) {
    SCOPED_TRACE(test.what);
    const auto walk = [&](Printer& p) {
      Infos infos(p);
      test.walk(p, infos);
    };
    EXPECT_EQ(capture(scrivo::modelFormat, walk), test.model);
    EXPECT_EQ(capture(scrivo::textFormat, walk), test.text);
  }
}

TEST(Model, ADocumentOfAnotherPrinterIsTheValueOfASimpleEntry) {
  for (const auto& [format, output] :
       {std::pair(scrivo::modelFormat, "{\"d\":{\"64\":{\"size\":-2}\n,\"65\":null}}\n"),
        std::pair(scrivo::textFormat, "ahead -2 behind")}) {
    Sink sink;
    Printer outer(sink.fd(), format);
    Infos infos(outer);
    outer.start();
    outer.startDict("d");
    outer.addFrills("ahead ");
    outer.startSimpleDictEntry(infos.key);
    outer.awaitDocument();
    {
      Printer inner(sink.fd(), format);
      Infos innerInfos(inner);
      inner.start();
      inner.addAttributes("%d", 1, innerInfos.size.getArg());
      inner.end();
      inner.close();
    }
    outer.endSimpleDictEntry();
    outer.addFrills(" behind");
    infos.key.setValue(65);
    outer.startSimpleDictEntry(infos.key);
    outer.endSimpleDictEntry();
    outer.endDict();
    outer.end();
    outer.close();
    EXPECT_EQ(sink.text(), output);
  }
}

TEST(Model, NestsToThirtyTwoLevels) {
  const auto nest = [](int levels) {
    return capture(scrivo::modelFormat, [=](Printer& p) {
      for (int i = 0; i < levels; ++i) p.startSubmodel("s");
      for (int i = 0; i < levels; ++i) p.endSubmodel();
    });
  };
  EXPECT_EQ(nest(32).size(), 32 * 6u);
  EXPECT_DEATH(nest(33), "Assertion failed: the model has at most 32 levels");
}

TEST(ModelDeath, MisuseSaysWhatIsWanted) {
  const struct {
    std::function<void(Printer&, Infos&)> walk;
    const char* text;
  } misuses[] = {
      {[](Printer& p, Infos&) { p.endList(); }, "endList\\(\\) closes what startList\\(\\) opened"},
      {[](Printer& p, Infos&) { p.end(); }, "end\\(\\) closes what start\\(\\) opened"},
      {[](Printer& p, Infos&) { p.startDict("d"), p.endSubmodel(); }, "endSubmodel\\(\\) closes"},
      {[](Printer& p, Infos&) { p.startDict("d"), p.start(); }, "start\\(\\) comes before all"},
      {[](Printer& p, Infos&) { p.startListEntry(); }, "a list entry stands in a list"},
      {[](Printer& p, Infos&) { p.startList("l"), p.startDict("d"); }, "a named part stands in"},
      {[](Printer& p, Infos& i) { p.startList("l"), p.addAttributes("", 1, i.name.getArg()); },
       "an attribute in a list has an empty key"},
      {[](Printer& p, Infos& i) {
         p.startSimpleDictEntry(i.key);
         p.addAttributes("", 2, i.bare.getArg(), i.bare.getArg());
       },
       "a simple entry has one value"},
      {[](Printer& p, Infos&) { p.startDict("d"), p.awaitDocument(); },
       "a document from elsewhere"},
      {[](Printer& p, Infos& i) {
         p.startSimpleDictEntry(i.key);
         p.awaitDocument();
         p.addAttributes("", 1, i.bare.getArg());
       },
       "a simple entry has one value"},
      {[](Printer& p, Infos&) { p.startDict("d"); }, "every part of the model is ended"},
      {[](Printer& p, Infos&) { p.close(), p.start(); }, "nothing is printed after close"},
      {[](Printer& p, Infos& i) { p.addAttributes(scrivo::RuntimeFormat(""), 2, i.name.getArg()); },
       "the count is the number of words"},
      {[](Printer& p, Infos&) {
         scrivo::IntAttrInfo unset(p, "unset");
         p.startDictEntry(unset);
       },
       "hasValue"},
  };
  for (const auto& [walk, text] : misuses) {
    EXPECT_DEATH(capture(scrivo::modelFormat,
                         [&, &step = walk](Printer& p) {
                           Infos infos(p);
                           step(p, infos);
                         }),
                 "Assertion failed: " + std::string(text));
  }
}

} // namespace
