// Types declared by attribute lines: accessors, tables, access by name, strep text, the registry.
#include "lumo/Attribute.h"
#include "support/Expect.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

class Inner : public Lumo::PtrInterface {
  LUMO_TYPE(Inner, "Test::Inner")
  LUMO_CTOR(std::uint32_t, id)
  LUMO_END
  explicit Inner(std::uint32_t id) : id_(id) {}
  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }
};

class Outer : public Lumo::PtrInterface {
  LUMO_TYPE(Outer, "Test::Outer")
  LUMO_CTOR(Lumo::String, name)
  LUMO_ATTR(int, count)
  LUMO_ATTR(bool, flag)
  LUMO_COMPUTED(std::uint32_t, twice)
  LUMO_ORDERED(std::uint16_t, Lumo::String, word, Word)
  LUMO_HASHED(Lumo::String, std::uint32_t, number, Number)
  LUMO_HASHED_ENTITIES(std::uint32_t, Inner, inner, Inner, id)
  LUMO_METHOD(add, "a", "b")
  LUMO_METHOD(reset)
  LUMO_END
  explicit Outer(Lumo::String name) : name_(std::move(name)) {}
  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }
  std::uint32_t twice() const { return static_cast<std::uint32_t>(2 * count_); }
  int add(int a, std::uint32_t b) const { return count_ + a + static_cast<int>(b); }
  void reset() { count_ = 0; }
};

class Nothing {
  LUMO_TYPE(Nothing, "Test::Nothing")
  LUMO_METHOD(answer)
  LUMO_END
  bool answer() const { return true; }
};

class OnlyCollection {
  LUMO_TYPE(OnlyCollection, "Test::OnlyCollection")
  LUMO_ORDERED(int, int, member, Member)
  LUMO_END
};

class Plain {
  LUMO_TYPE(Plain, "Test::Plain")
  LUMO_ATTR(Lumo::String, text)
  LUMO_ATTR(Lumo::Ptr<Inner>, handle)
  LUMO_ATTR(std::uint64_t, large)
  LUMO_HASHED(int, int, member, Member)
  LUMO_END
};

LUMO_DEFINE_TYPE(Inner);
LUMO_DEFINE_TYPE(Outer);
LUMO_DEFINE_TYPE(Nothing);
LUMO_DEFINE_TYPE(OnlyCollection);
LUMO_DEFINE_TYPE(Plain);

using Lumo::wrapAttrValue;
using support::messageOf;

const Lumo::AttributeRecord& row(const Lumo::TypeRecord& type, const char* name) {
  const auto* const found = type.attribute(name);
  if (!found) throw std::invalid_argument(std::string("no attribute ") + name);
  return *found;
}

TEST(CollectionAccessorTest, MissingKeysReadAsDefaults) {
  const auto outer = Lumo::newEntity<Outer>("x");
  outer->wordIs(7, "seven");
  outer->wordIs(7, "sept");
  outer->newWord(8) = "eight";
  EXPECT_EQ(outer->words(), 2u);
  EXPECT_EQ(outer->wordDel(7).str(), "sept");
  EXPECT_TRUE(outer->wordDel(7).empty());
  EXPECT_TRUE(outer->word(7).empty());
  for (std::uint32_t i = 0; i < 30; ++i) outer->numberIs(std::to_string(i), i);
  outer->numberDelAll();
  EXPECT_EQ(outer->numbers() + outer->number("3") + outer->numberDel("3"), 0u);
}

TEST(CollectionAccessorTest, EntitiesAreKeyedByTheirOwnAttributeAndNeverNull) {
  const auto outer = Lumo::newEntity<Outer>("x");
  const auto first = Lumo::newEntity<Inner>(5u), second = Lumo::newEntity<Inner>(5u);
  outer->innerIs(first);
  outer->innerIs(second);
  EXPECT_TRUE(outer->inner(5) == second);
  EXPECT_EQ(first->references(), 1u);
  EXPECT_EQ(messageOf<Lumo::RangeException>([&] { outer->innerIs(nullptr); }),
            "null _inner parameter to mutator for Test::Outer::inner not allowed\"");
  EXPECT_EQ(outer->inners(), 1u);
}

TEST(AttributeTableTest, RowsStandInTheOrderOfTheLines) {
  const auto& type = Outer::lumoType;
  std::string names;
  for (const auto& row : type.attributes) {
    EXPECT_EQ(row.index, 130 + (&row - &type.attributes[0])) << "one level above its base";
    names += std::string(row.name) + ":" + row.valueType + " ";
  }
  EXPECT_EQ(names, "name:Lumo::String count:int flag:bool twice:U32 word:Lumo::String number:U32 "
                   "inner:Test::Inner add:int reset:void ");
  EXPECT_STREQ(row(type, "word").keyType, "U16");
  EXPECT_STREQ(row(type, "inner").internalKey, "id");
  EXPECT_STREQ(row(type, "add").arguments[1].type, "U32");
  EXPECT_EQ(row(type, "add").arguments[2].name, nullptr);
  EXPECT_EQ(Plain::lumoType.attributes[0].index, 2u);
  EXPECT_EQ(type.attribute("Count"), nullptr);
  EXPECT_EQ(Lumo::typeNode("Test::Outer"), nullptr);
  Lumo::typeNodeIs(type);
  EXPECT_EQ(Lumo::typeNode("Test::Outer"), &type);
}

TEST(AccessByNameTest, ReadsAndWritesTheSameState) {
  const auto outer = Lumo::newEntity<Outer>("x");
  const auto& type = Outer::lumoType;
  row(type, "count").write(outer.ptr(), wrapAttrValue(21));
  EXPECT_EQ(outer->count(), 21);
  EXPECT_EQ(Lumo::unwrap<int>(row(type, "count").read(outer.ptr())), 21);
  EXPECT_EQ(Lumo::unwrap<std::uint32_t>(row(type, "twice").read(outer.ptr())), 42u);
  EXPECT_EQ(Lumo::unwrap<Lumo::String>(row(type, "name").read(outer.ptr())).str(), "x");
  for (const char* fixed : {"name", "twice"}) EXPECT_EQ(row(type, fixed).write, nullptr) << fixed;
  const std::vector<Lumo::Ptr<Lumo::GenericIf>> arguments = {wrapAttrValue(20),
                                                             wrapAttrValue(std::uint32_t{3})};
  EXPECT_EQ(Lumo::unwrap<int>(row(type, "add").call(outer.ptr(), arguments)), 44);
  EXPECT_FALSE(row(type, "reset").call(outer.ptr(), {}));
  EXPECT_EQ(outer->count(), 0);
}

TEST(AccessByNameTest, WorksOnMembers) {
  const auto outer = Lumo::newEntity<Outer>("x");
  const auto& word = row(Outer::lumoType, "word");
  const auto key = wrapAttrValue(std::uint16_t{7});
  EXPECT_FALSE(word.hasMember(outer.ptr(), key));
  EXPECT_TRUE(Lumo::unwrap<Lumo::String>(word.readMember(outer.ptr(), key)).empty());
  word.writeMember(outer.ptr(), key, wrapAttrValue(Lumo::String("seven")));
  EXPECT_EQ(outer->word(7).str(), "seven");
  EXPECT_TRUE(word.hasMember(outer.ptr(), key));
  EXPECT_EQ(word.members(outer.ptr()), 1u);
  EXPECT_EQ(Lumo::unwrap<Lumo::String>(word.deleteMember(outer.ptr(), key)).str(), "seven");
  EXPECT_EQ(outer->words(), 0u);
}

TEST(AccessByNameTest, RefusesWrongTypesAndChangesNothing) {
  const auto outer = Lumo::newEntity<Outer>("x");
  outer->countIs(1);
  const auto& type = Outer::lumoType;
  const auto text = wrapAttrValue(Lumo::String("1"));
  const std::vector<Lumo::Ptr<Lumo::GenericIf>> one = {wrapAttrValue(20)};
  const std::vector<Lumo::Ptr<Lumo::GenericIf>> swapped = {wrapAttrValue(std::uint32_t{3}),
                                                           wrapAttrValue(20)};
  EXPECT_THROW(row(type, "count").write(outer.ptr(), text), Lumo::RangeException);
  EXPECT_THROW(row(type, "count").write(outer.ptr(), nullptr), Lumo::RangeException);
  EXPECT_THROW(row(type, "word").readMember(outer.ptr(), text), Lumo::RangeException);
  EXPECT_THROW(row(type, "add").call(outer.ptr(), one), Lumo::RangeException);
  EXPECT_THROW(row(type, "add").call(outer.ptr(), swapped), Lumo::RangeException);
  EXPECT_EQ(outer->count(), 1);
}

TEST(GenericIfTest, KnowsItsTypeAndText) {
  const auto value = wrapAttrValue(std::uint32_t{7});
  EXPECT_STREQ(value->type(), "U32");
  EXPECT_EQ(value->strRep().str(), "7");
  EXPECT_THROW(value->hash(), Lumo::InternalException);
  EXPECT_THROW(value->voidPtrIs("U16"), Lumo::RangeException);
  EXPECT_EQ(*static_cast<std::uint32_t*>(value->voidPtrIs("U32")), 7u);
}

TEST(StrepTest, EveryShape) {
  Plain plain;
  plain.textIs("it's");
  plain.largeIs(~std::uint64_t{0});
  plain.memberIs(1, 1);
  OnlyCollection collection;
  for (int i = 0; i < 10; ++i) collection.memberIs(i, i);
  const struct {
    Lumo::String strep;
    const char* expected;
  } cases[] = {
      {Lumo::valueToStrep(Nothing()), ""},
      {Lumo::valueToStrep(OnlyCollection()), "None"},
      {Lumo::valueToStrep(collection), "None"},
      {Lumo::valueToStrep(Plain()),
       "Value('Test::Plain', ** {'text': '', 'handle': None, 'large': 0, 'member': None})"},
      {Lumo::valueToStrep(plain),
       "Value('Test::Plain', ** {'text': 'it\\'s', 'handle': None, 'large': "
       "18446744073709551615, 'member': None})"},
      {Lumo::valueToStrep(true), "True"},
      {Lumo::valueToStrep(-5), "-5"},
  };
  for (const auto& [strep, expected] : cases) EXPECT_EQ(strep.str(), expected);
  const auto entity = Lumo::newEntity<Inner>(3u);
  plain.handleIs(entity);
  const auto name = Lumo::valueToStrepOfRawPtr(entity.ptr(), "Test::Inner").str();
  EXPECT_NE(Lumo::valueToStrep(plain).str().find("'handle': " + name + ","), std::string::npos);
  EXPECT_EQ(name.find("'id'"), std::string::npos) << "an entity is named, not written out";
}

} // namespace
