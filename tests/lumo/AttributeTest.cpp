// Types declared by attribute lines: accessors, tables, and all that access by name can do.
#include "lumo/Attribute.h"
#include "lumo/Reflect.h"
#include "support/Expect.h"

#include <algorithm>
#include <boost/container/small_vector.hpp>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

// Named, since the rows of their tables instantiate templates of external linkage with them.
namespace attributes {

class Inner : public Lumo::PtrInterface {
  LUMO_TYPE(Inner, "Test::Inner")
  LUMO_CTOR(std::uint32_t, id)
  LUMO_ATTR(int, mark)
  LUMO_END
  explicit Inner(std::uint32_t id) : id_(id) {}
  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }
};

class Outer : public Lumo::PtrInterface {
  LUMO_TYPE(Outer, "Test::Outer")
  LUMO_CTOR(Lumo::String, name)
  LUMO_CTOR_WRITABLE(Lumo::String, title)
  LUMO_ATTR(int, count)
  LUMO_ATTR(Lumo::Ptr<Inner>, handle)
  LUMO_ATTR(Lumo::Ptr<const Inner>, view)
  LUMO_COMPUTED(std::uint32_t, twice)
  LUMO_ORDERED(std::uint16_t, Lumo::String, word, Word)
  LUMO_HASHED(Lumo::String, std::uint32_t, number, Number)
  LUMO_HASHED_ENTITIES(std::uint32_t, Inner, inner, Inner, id)
  LUMO_METHOD(add, "a", "b")
  LUMO_METHOD(reset)
  LUMO_END
  Outer(Lumo::String name, Lumo::String title) : name_(std::move(name)), title_(std::move(title)) {}
  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }
  std::uint32_t twice() const { return static_cast<std::uint32_t>(2 * count_); }
  int add(int a, std::uint32_t b) const { return count_ + a + static_cast<int>(b); }
  void reset() { count_ = 0; }
};

class Key {
  LUMO_TYPE(Key, "Test::Key")
  LUMO_CTOR(std::uint16_t, number)
  LUMO_CTOR(Lumo::Ptr<Inner>, owner)
  LUMO_END
  LUMO_VALUE_COMPARED(Key)
  Key() = default;
  Key(std::uint16_t number, Lumo::Ptr<Inner> owner) : number_(number), owner_(std::move(owner)) {}
  std::uint32_t hash() const { return 1000u + number_; }
  friend bool operator==(const Key& a, const Key& b) { return a.number_ == b.number_; }
  friend bool operator<(const Key& a, const Key& b) { return a.number_ < b.number_; }
};

struct Near {
  int low = 0;
  LUMO_TYPE(Near, "Test::Near")
  LUMO_PUBLIC(low)
  LUMO_END
};

struct Far : Near {
  LUMO_TYPE(Far, "Test::Far")
  LUMO_BASE(Near)
  LUMO_PUBLIC(low)
  LUMO_ATTR(int, high)
  LUMO_END
};

LUMO_DEFINE_TYPE(Inner);
LUMO_DEFINE_TYPE(Outer);
LUMO_DEFINE_TYPE(Key);
LUMO_DEFINE_TYPE(Near);
LUMO_DEFINE_TYPE(Far);

} // namespace attributes

namespace {

using namespace attributes;

using Lumo::GenericPtr;
using Lumo::InternalException;
using Lumo::OpCode;
using Lumo::RangeException;
using Lumo::wrapAttrValue;
using support::messageOf;

const Lumo::AttributeRecord& row(const Lumo::TypeRecord& type, const char* name) {
  return Lumo::attributeOf(type, name);
}

GenericPtr text(const char* value) { return wrapAttrValue(Lumo::String(value)); }
GenericPtr u16(unsigned value) { return wrapAttrValue(static_cast<std::uint16_t>(value)); }
GenericPtr u32(std::uint32_t value) { return wrapAttrValue(value); }

/// An object with something in each attribute.
Lumo::Ptr<Outer> filled() {
  auto outer = Lumo::newEntity<Outer>("box", "old");
  outer->countIs(21);
  outer->wordIs(7, "seven");
  outer->numberIs("a", 1);
  outer->innerIs(Lumo::newEntity<Inner>(5u));
  return outer;
}

/// All that an operation can change.
std::string stateOf(const Outer& outer) {
  return outer.name().str() + " " + outer.title().str() + " " + std::to_string(outer.count()) +
         " " + outer.word(7).str() + outer.word(8).str() + " " + std::to_string(outer.words()) +
         " " + std::to_string(outer.number("a")) + " " + std::to_string(outer.numbers()) + " " +
         std::to_string(outer.inners());
}

TEST(CollectionAccessorTest, MissingKeysReadAsDefaults) {
  const auto outer = filled();
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
  const auto outer = Lumo::newEntity<Outer>("x", "y");
  const auto first = Lumo::newEntity<Inner>(5u), second = Lumo::newEntity<Inner>(5u);
  outer->innerIs(first);
  outer->innerIs(second);
  EXPECT_TRUE(outer->inner(5) == second);
  EXPECT_EQ(first->references(), 1u);
  const char* const refusal =
      "null _inner parameter to mutator for Test::Outer::inner not allowed\"";
  EXPECT_EQ(messageOf<RangeException>([&] { outer->innerIs(nullptr); }), refusal);
  EXPECT_EQ(messageOf<RangeException>(
                [&] { Lumo::writeMember(*wrapAttrValue(outer), "inner", u32(5), {}); }),
            refusal);
  EXPECT_EQ(outer->inners(), 1u);
}

TEST(AttributeTableTest, RowsStandInTheOrderOfTheLines) {
  const auto& type = Outer::lumoType;
  std::string names;
  for (const auto& row : type.attributes) {
    EXPECT_EQ(row.index, 130 + (&row - &type.attributes[0])) << "one level above its base";
    names += std::string(row.name) + ":" + row.valueType->name + " ";
  }
  EXPECT_EQ(names, "name:Lumo::String title:Lumo::String count:int handle:Test::Inner "
                   "view:Test::Inner twice:U32 word:Lumo::String number:U32 inner:Test::Inner "
                   "add:int reset:void ");
  EXPECT_STREQ(row(type, "word").keyType->name, "U16");
  EXPECT_STREQ(row(type, "inner").internalKey, "id");
  EXPECT_STREQ(row(type, "add").arguments[1].type->name, "U32");
  EXPECT_EQ(row(type, "add").arguments[2].name, nullptr);
  EXPECT_EQ(row(Far::lumoType, "low").index, 2u);
  EXPECT_EQ(row(Far::lumoType, "high").index, 130u);
  EXPECT_EQ(messageOf<RangeException>([&] { row(Key::lumoType, "Number"); }),
            "Test::Key has no attribute 'Number', but: number owner");
  EXPECT_EQ(Lumo::typeNode("Test::Outer"), nullptr);
  Lumo::typeNodeIs(type);
  EXPECT_EQ(Lumo::typeNode("Test::Outer"), &type);
}

/// What an operation came to: its result, an entity by its type's name, "-" for none; "no" where it
/// is not supported, "constant" and "range" for the other refusals.
std::string outcome(Lumo::GenericIf& object, const Lumo::AttributeOp& op, const GenericPtr& key,
                    const GenericPtr& value) {
  try {
    const auto result = Lumo::operate(object, op, key, value);
    if (!result) return "-";
    return result->type().isEntity() ? result->type().name : result->strRep().str();
  } catch (const InternalException& error) {
    const std::string_view message = error.what();
    return message.find("does not support") != message.npos ? "no" : "constant";
  } catch (const RangeException&) {
    return "range";
  }
}

struct OperationCase {
  const char* attribute; ///< null for the object as a whole
  std::string outcomes;  ///< "CODE=OUTCOME " for each code that is supported
  GenericPtr key = {};
  GenericPtr value = {};
  std::vector<GenericPtr> arguments = {};
};

std::vector<OperationCase> operationCases() {
  const auto inner = wrapAttrValue(Lumo::newEntity<Inner>(5u));
  const auto minus = wrapAttrValue(-4), twenty = wrapAttrValue(20);
  return {
      {"name", "0='box' ", {}, text("x")},
      {"name", "", text("key"), text("x")},
      {"title", "0='old' 1=- ", {}, text("x")},
      {"title", "0='old' 1=range "},
      {"count", "0=21 1=- ", {}, minus},
      {"count", "0=21 1=range ", {}, text("4")},
      {"handle", "0=Test::Inner 1=- ", {}, inner},
      {"handle", "0=Test::Inner 1=range ", {}, minus},
      {"twice", "0=42 ", {}, u32(2)},
      {"word", "0='seven' 1=- 2='seven' 3=1 4=1 5=True ", u16(7), text("sept")},
      {"word", "0='' 1=- 2='' 3=1 4=1 5=False ", u16(8), text("acht")},
      {"word", "1=range 2=range 3=1 4=1 5=range ", {}, text("sept")},
      {"word", "0=range 1=range 2=range 3=1 4=1 5=range ", u32(7), text("sept")},
      {"number", "0=1 1=- 2=1 3=1 4=0 5=True ", text("a"), u32(2)},
      {"number", "0=0 1=range 2=0 3=1 4=0 5=False ", text("b"), u16(2)},
      {"inner", "0=Test::Inner 1=- 2=Test::Inner 3=1 4=0 5=True ", u32(5), inner},
      {"inner", "0=Test::Inner 1=range 2=Test::Inner 3=1 4=0 5=True ", u32(5)},
      {"add", "8=44 ", {}, {}, {twenty, u32(3)}},
      {"add", "8=range ", {}, {}, {twenty}},
      {"add", "8=range ", {}, {}, {u32(3), twenty}},
      {"reset", "8=- "},
      {nullptr, "10=False ", wrapAttrValue(filled())},
      {nullptr, "10=range "},
  };
}

/// What the codes come to, each on an object of its own: those that are codes and those that are
/// not. A refusal leaves the object as it is, and so does everything if it is constant.
std::string outcomesOf(const OperationCase& of, bool constant) {
  std::string found;
  for (unsigned code = 0; code <= 12; ++code) {
    const auto outer = filled();
    const auto before = stateOf(*outer);
    const auto object = wrapAttrValue(outer, constant);
    const Lumo::AttributeOp op{of.attribute ? &row(Outer::lumoType, of.attribute) : nullptr,
                               static_cast<OpCode>(code), of.arguments};
    const auto result = outcome(*object, op, of.key, of.value);
    if (result != "no") found += std::to_string(code) + "=" + result + " ";
    const bool mayChange = !constant && result != "no" && result != "range";
    EXPECT_TRUE(mayChange || stateOf(*outer) == before) << found;
  }
  return found;
}

TEST(OperationTest, EveryCodeOnEveryKindOfAttribute) {
  for (const auto& of : operationCases()) {
    EXPECT_EQ(outcomesOf(of, false), of.outcomes) << (of.attribute ? of.attribute : "the object");
  }
}

TEST(OperationTest, AConstantObjectIsReadOnly) {
  for (const auto& of : operationCases()) {
    auto expected = std::regex_replace(of.outcomes, std::regex("\\b([12])=\\S+"), "$1=constant");
    if (of.outcomes == "8=- ") expected = "8=constant ";
    EXPECT_EQ(outcomesOf(of, true), expected) << (of.attribute ? of.attribute : "the object");
  }
  const Lumo::Ptr<const Outer> outer = filled();
  EXPECT_TRUE(wrapAttrValue(outer)->constant());
}

TEST(OperationTest, WorksOnTheObjectItself) {
  const auto outer = filled();
  const auto object = wrapAttrValue(outer);
  const auto inner = Lumo::newEntity<Inner>(6u);
  Lumo::write(*object, "title", text("new"));
  Lumo::write(*object, "count", wrapAttrValue(-4));
  Lumo::write(*object, "handle", wrapAttrValue(inner));
  Lumo::writeMember(*object, "word", u16(7), text("sept"));
  Lumo::writeMember(*object, "word", u16(8), text("huit"));
  Lumo::operate(*object, {&row(Outer::lumoType, "number"), OpCode::del}, text("a"));
  EXPECT_EQ(stateOf(*outer), "box new -4 septhuit 2 0 0 1");
  EXPECT_TRUE(outer->handle() == inner);
  Lumo::call(*object, "reset", {});
  EXPECT_EQ(outer->count(), 0);
  outer->countIs(8);
  EXPECT_EQ(Lumo::unwrap<std::uint32_t>(Lumo::read(*object, "twice")), 16u);
  const auto copy = Lumo::read(*object, "title");
  *static_cast<Lumo::String*>(copy->voidPtrIs(copy->type())) = "changed";
  EXPECT_EQ(outer->title().str(), "new") << "what was read is a copy";
}

TEST(OperationTest, TheAttributeOfAnotherTypeIsNotHandled) {
  Far far;
  const auto object = Far::lumoType.FromVoidPointer(Far::lumoType, &far, false);
  bool notHandled = false;
  const auto ask = [&](const Lumo::TypeRecord& type, const Lumo::AttributeRecord& attribute) {
    notHandled = false;
    return type.genericIfAttributeOp(type, &far, false, {&attribute, OpCode::read}, {}, {},
                                     notHandled);
  };
  EXPECT_FALSE(ask(Far::lumoType, row(Far::lumoType, "low")));
  EXPECT_TRUE(notHandled) << "it is the base's";
  EXPECT_TRUE(ask(Near::lumoType, row(Far::lumoType, "low")));
  EXPECT_FALSE(notHandled);
  EXPECT_FALSE(ask(Near::lumoType, row(Far::lumoType, "high")));
  EXPECT_TRUE(notHandled);
  Lumo::write(*object, "low", wrapAttrValue(3));
  Lumo::write(*object, "high", wrapAttrValue(4));
  EXPECT_EQ(far.low * 10 + far.high(), 34) << "operate asks the base";
  EXPECT_EQ(messageOf<InternalException>([&] {
              Lumo::operate(*object, {&row(Outer::lumoType, "count"), OpCode::read});
            }),
            "Test::Far::count does not support read (operation 0)");
}

TEST(OperationTest, ValuesCompare) {
  const auto operate = [](const Key& key, OpCode code, const GenericPtr& other) {
    return outcome(*wrapAttrValue(key), {nullptr, code}, other, {});
  };
  const Key low(3, {}), high(4, {});
  EXPECT_EQ(operate(Key(), OpCode::isDefault, {}), "True");
  EXPECT_EQ(operate(low, OpCode::isDefault, {}), "False");
  EXPECT_EQ(operate(low, OpCode::equal, wrapAttrValue(Key(3, {}))), "True");
  EXPECT_EQ(operate(low, OpCode::equal, wrapAttrValue(high)), "False");
  EXPECT_EQ(operate(low, OpCode::less, wrapAttrValue(high)), "True");
  EXPECT_EQ(operate(high, OpCode::less, wrapAttrValue(low)), "False");
  for (const OpCode code : {OpCode::equal, OpCode::less}) {
    EXPECT_EQ(operate(low, code, {}), "range");
    EXPECT_EQ(operate(low, code, u16(3)), "range");
  }
  const auto outer = filled();
  EXPECT_EQ(outcome(*wrapAttrValue(outer), {nullptr, OpCode::equal}, wrapAttrValue(outer), {}),
            "True")
      << "an entity equals itself alone";
}

TEST(ConstructionTest, TakesTheMarkedAttributesInTheirOrder) {
  const auto owner = wrapAttrValue(Lumo::newEntity<Inner>(5u));
  const struct {
    Lumo::GenericArguments arguments;
    const char* message;
  } cases[] = {
      {{u16(7), owner}, "none"},
      {{u16(7), {}}, "none"}, // no handle
      {{u16(7)}, "expected 2 arguments (number, owner), found 1"},
      {{u16(7), owner, owner}, "expected 2 arguments (number, owner), found 3"},
      {{u32(7), owner}, "argument number: expected a value of type U16, found U32"},
      {{{}, owner}, "argument number: expected a value of type U16, found None"},
      {{u16(7), u16(7)}, "argument owner: expected a value of type Test::Inner, found U16"},
  };
  for (const auto& [arguments, message] : cases) {
    EXPECT_EQ(messageOf<RangeException>([&, &given = arguments] {
                const auto key = Lumo::unwrap<Key>(Lumo::construct(Key::lumoType, given));
                EXPECT_EQ(key.number(), 7u);
              }),
              message);
  }
}

TEST(ConstructionTest, AnEntityIsHeldByItsFace) {
  const auto& type = Outer::lumoType;
  const auto object = type.genericIfFromCtorArgs(type, {text("a"), text("b")}, true);
  EXPECT_TRUE(object->constant());
  EXPECT_FALSE(Lumo::construct(type, {text("a"), text("b")})->constant());
  const auto* const outer = static_cast<const Outer*>(object->voidPtrIs(type));
  EXPECT_EQ(outer->references(), 1u);
  EXPECT_EQ(outer->name().str() + outer->title().str(), "ab");
  EXPECT_EQ(outer->fwkType(), &object->type());
}

TEST(FaceTest, FromVoidPointerSharesAndWrappingCopies) {
  Far far;
  const auto shared = Far::lumoType.FromVoidPointer(Far::lumoType, &far, false);
  const auto copied = wrapAttrValue(far);
  Lumo::write(*shared, "high", wrapAttrValue(1));
  Lumo::write(*copied, "high", wrapAttrValue(2));
  EXPECT_EQ(far.high(), 1);
  EXPECT_EQ(shared->voidPtrIs(Far::lumoType), &far);
  const auto entity = filled();
  {
    const auto object = Outer::lumoType.FromVoidPointer(Outer::lumoType, entity.ptr(), true);
    EXPECT_TRUE(object->constant());
    EXPECT_EQ(object->voidPtrIs(Outer::lumoType), entity.ptr());
    EXPECT_EQ(entity->references(), 2u);
  }
  EXPECT_EQ(entity->references(), 1u);
}

TEST(FaceTest, KnowsItsTypeHashAndText) {
  const auto value = u32(7), key = wrapAttrValue(Key(3, {}));
  EXPECT_STREQ(value->type().name, "U32");
  EXPECT_EQ(value->strRep().str(), "7");
  EXPECT_EQ(*static_cast<std::uint32_t*>(value->voidPtrIs(value->type())), 7u);
  EXPECT_THROW(value->voidPtrIs(u16(7)->type()), RangeException);
  EXPECT_THROW(wrapAttrValue(Far())->voidPtrIs(Near::lumoType), RangeException);
  EXPECT_EQ(key->hash(), 1003u);
  for (const auto& unhashable : {value, wrapAttrValue(Far()), wrapAttrValue(filled())}) {
    EXPECT_THROW(unhashable->hash(), InternalException);
  }
}

TEST(FaceTest, ANullHandleHasNoAttributes) {
  const auto null = wrapAttrValue(Lumo::Ptr<Outer>());
  EXPECT_EQ(null->strRep().str(), "None");
  EXPECT_EQ(null->voidPtrIs(Outer::lumoType), nullptr);
  EXPECT_EQ(messageOf<RangeException>([&] { Lumo::read(*null, "name"); }), "a null Test::Outer");
  EXPECT_THROW(Lumo::Walk(null, row(Outer::lumoType, "word")), RangeException);
}

TEST(FaceTest, AHandleToConstStaysOne) {
  const auto outer = filled();
  const auto object = wrapAttrValue(outer);
  const auto inner = Lumo::newEntity<Inner>(5u);
  Lumo::write(*object, "view", wrapAttrValue(inner));
  const auto seen = Lumo::read(*object, "view");
  EXPECT_TRUE(seen->constant());
  EXPECT_THROW(Lumo::write(*seen, "mark", wrapAttrValue(1)), InternalException);
  EXPECT_THROW(Lumo::write(*object, "handle", seen), InternalException);
  EXPECT_THROW(Lumo::construct(Key::lumoType, {u16(1), seen}), InternalException);
  EXPECT_THROW(Lumo::writeMember(*object, "inner", u32(5), seen), InternalException);
  EXPECT_FALSE(outer->handle());
  Lumo::write(*object, "handle", wrapAttrValue(inner));
  EXPECT_FALSE(Lumo::read(*object, "handle")->constant());
  EXPECT_TRUE(outer->view() == outer->handle());
}

/// Members 0 to 5 in both collections; "0" has the value 0 and so on.
Lumo::Ptr<Outer> sixMembers() {
  const auto outer = Lumo::newEntity<Outer>("x", "y");
  for (const unsigned i : {3, 0, 5, 1, 4, 2}) {
    outer->wordIs(static_cast<std::uint16_t>(i), std::to_string(i));
    outer->numberIs(std::to_string(i), i);
  }
  return outer;
}

class WalkTest : public testing::TestWithParam<const char*> {
 protected:
  Lumo::Walk walk(const GenericPtr* key = nullptr) const {
    return {wrapAttrValue(outer), attribute, key};
  }
  GenericPtr key(unsigned number) const {
    return ordered ? u16(number) : text(std::to_string(number).c_str());
  }
  void enter(unsigned number) {
    Lumo::writeMember(*wrapAttrValue(outer), attribute.name, key(number),
                      ordered ? text("new") : u32(99));
  }
  std::size_t members() const { return ordered ? outer->words() : outer->numbers(); }

  const Lumo::AttributeRecord& attribute = row(Outer::lumoType, GetParam());
  const bool ordered = attribute.kind == Lumo::AttributeKind::ordered;
  Lumo::Ptr<Outer> outer = sixMembers();
};
INSTANTIATE_TEST_SUITE_P(Collections, WalkTest, testing::Values("word", "number"));

/// The digits of a key or member.
std::string digits(const GenericPtr& value) {
  const auto shown = value->strRep();
  std::string found;
  for (const char c : shown.view()) {
    if (c >= '0' && c <= '9') found += c;
  }
  return found;
}

TEST_P(WalkTest, VisitsEveryMemberOnce) {
  std::string keys;
  for (auto at = walk(); at; at.next()) {
    keys += digits(at.key());
    EXPECT_EQ(digits(at.value()), digits(at.key()));
  }
  if (!ordered) std::sort(keys.begin(), keys.end());
  EXPECT_EQ(keys, "012345");
}

TEST_P(WalkTest, StartsAtAKeyOrEndsAtOnce) {
  const auto three = key(3), six = key(6), wrong = wrapAttrValue(3);
  auto at = walk(&three);
  ASSERT_TRUE(at);
  EXPECT_EQ(digits(at.key()), "3");
  if (ordered) {
    at.next();
    EXPECT_EQ(digits(at.key()), "4");
  }
  auto ended = walk(&six);
  EXPECT_FALSE(ended);
  EXPECT_FALSE(ended.key());
  EXPECT_FALSE(ended.value());
  ended.next();
  ended.del();
  enter(7);
  EXPECT_FALSE(ended) << "the end is the end, whatever comes later";
  EXPECT_EQ(members(), 7u);
  EXPECT_THROW(walk(&wrong), RangeException);
}

TEST_P(WalkTest, GoesOnWhereAMemberIsDeleted) {
  unsigned visited = 0;
  for (auto at = walk(); at; at.next()) {
    ++visited;
    const auto gone = digits(at.key());
    at.del();
    EXPECT_EQ(digits(at.key()), gone);
    EXPECT_EQ(digits(at.value()), ordered ? "" : "0") << "a deleted member reads as the default";
    at.del();
  }
  EXPECT_EQ(visited, 6u);
  EXPECT_EQ(members(), 0u);
}

TEST_P(WalkTest, LeavesNoMemberOutWhenOthersComeAndGo) {
  std::string keys;
  for (auto at = walk(); at; at.next()) {
    keys += digits(at.key()) + " ";
    at.del();
    if (keys.size() != 10) continue;
    for (const unsigned more : {91, 92, 93}) enter(more); // fills the holes of the five deleted
  }
  for (const char* member : {"0 ", "1 ", "2 ", "3 ", "4 ", "5 "}) {
    EXPECT_NE(keys.find(member), keys.npos) << member << "in " << keys;
  }
}

TEST_P(WalkTest, DeletesNothingOfAConstantObject) {
  const auto constant = wrapAttrValue(Lumo::Ptr<const Outer>(outer));
  Lumo::Walk at(constant, attribute);
  EXPECT_THROW(at.del(), InternalException);
  EXPECT_EQ(members(), 6u);
  EXPECT_EQ(digits(at.value()), digits(at.key()));
}

TEST_P(WalkTest, KeepsItsObjectAlive) {
  auto at = walk();
  outer = {};
  unsigned visited = 0;
  for (; at; at.next()) ++visited;
  EXPECT_EQ(visited, 6u);
}

TEST(IteratorTest, OtherAttributesHaveNone) {
  const auto outer = filled();
  for (const char* name : {"name", "count", "twice", "add"}) {
    const auto& type = Outer::lumoType;
    Lumo::IteratorFunctions functions;
    EXPECT_FALSE(type.genericIfIterator(outer.ptr(), false, row(type, name), functions)) << name;
    EXPECT_FALSE(type.genericIfIteratorKey(outer.ptr(), false, row(type, name), u16(7), functions));
    EXPECT_EQ(messageOf<RangeException>([&] { Lumo::Walk(wrapAttrValue(outer), row(type, name)); }),
              std::string("Test::Outer::") + name + " is no collection");
  }
}

} // namespace
