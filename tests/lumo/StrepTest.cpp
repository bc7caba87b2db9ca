// Strep text of small types: what is written, what is read back, what is refused and how.
#include "lumo/Attribute.h"
#include "lumo/Reflect.h"
#include "support/Expect.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <random>
#include <string>

// Named, since the rows of their tables instantiate templates of external linkage with them.
namespace streps {

class Thing : public Lumo::PtrInterface {
  LUMO_TYPE(Thing, "Test::Thing")
  LUMO_ATTR(int, mark)
  LUMO_END
  const Lumo::TypeRecord* fwkType() const override { return &lumoType; }
};

class SpecialThing : public Thing {
 public:
  static constexpr const char* lumoName = "Test::SpecialThing";
};

/// A number with a limit.
class Grade {
 public:
  Grade() = default;
  explicit Grade(std::uint8_t value) : value_(value) {
    if (value > 6) throw Lumo::RangeException("no grade is above 6");
  }
  std::uint8_t value() const { return value_; }
  friend bool operator==(const Grade&, const Grade&) = default;

 private:
  std::uint8_t value_ = 0;
};

/// A notation that can be written in several ways: letters stand for themselves in lower case.
class Word {
 public:
  Word() = default;
  static std::optional<Word> parse(std::string_view text) {
    Word word;
    for (const char c : text) {
      if (!std::isalpha(static_cast<unsigned char>(c))) return {};
      word.text_ += static_cast<char>(std::tolower(c));
    }
    return word;
  }
  Lumo::String stringValue() const { return text_; }
  friend bool operator==(const Word&, const Word&) = default;

 private:
  std::string text_;
};

enum class Color : std::uint32_t { red = 1, green = 2 };
inline constexpr Lumo::EnumName<Color> colorNames[] = {{Color::red, "red"},
                                                       {Color::green, "green"}};

class Pair {
  LUMO_TYPE(Pair, "Test::Pair")
  LUMO_ATTR(streps::Grade, grade)
  LUMO_ATTR(streps::Word, word)
  LUMO_END
  LUMO_VALUE(Pair)
  Pair() = default;
  friend bool operator==(const Pair&, const Pair&) = default;
};

class Plain {
  LUMO_TYPE(Plain, "Test::Plain")
  LUMO_ATTR(Pair, pair)
  LUMO_ATTR(bool, flag)
  LUMO_ATTR(int, number)
  LUMO_ATTR(std::uint64_t, large)
  LUMO_ATTR(double, real)
  LUMO_ATTR(Lumo::String, text)
  LUMO_ATTR(Color, color)
  LUMO_ATTR(Lumo::Ptr<Thing>, handle)
  LUMO_ATTR(Lumo::Ptr<const Thing>, view)
  LUMO_END
  LUMO_VALUE(Plain)
  Plain() { color_ = Color::red; }
  friend bool operator==(const Plain&, const Plain&) = default;
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

class WithCollection {
  LUMO_TYPE(WithCollection, "Test::WithCollection")
  LUMO_HASHED(int, int, member, Member)
  LUMO_ATTR(int, number)
  LUMO_END
};

} // namespace streps

LUMO_TYPE_NAME_AS(streps::Grade, "Test::Grade");
LUMO_TYPE_NAME_AS(streps::Word, "Test::Word");
LUMO_TYPE_NAME_AS(streps::Color, "Test::Color");
LUMO_ENUM(streps::Color, streps::colorNames);

namespace streps {

LUMO_DEFINE_TYPE(Thing);
LUMO_DEFINE_TYPE(Pair);
LUMO_DEFINE_TYPE(Plain);
LUMO_DEFINE_TYPE(Nothing);
LUMO_DEFINE_TYPE(OnlyCollection);
LUMO_DEFINE_TYPE(WithCollection);

} // namespace streps

namespace {

using namespace streps;
using Lumo::RangeException;
using Lumo::valueToStrep;
using support::messageOf;

/// Reads all of a text as a `T`.
template <class T>
T readAll(const std::string& text) {
  auto at = Lumo::StringIterator::begin(text);
  T value = Lumo::sequenceToValue<T>(at, Lumo::StringIterator::end(text));
  Lumo::strepToValueEnd(text, at);
  return value;
}

template <class T>
std::string refusal(const std::string& text) {
  return messageOf<RangeException>([&] { readAll<T>(text); });
}

/// The text of a `Plain` with that text for its handle to a changeable thing.
std::string plainWith(const std::string& handle) {
  const auto text = valueToStrep(Plain()).str();
  const std::string before = "'handle': ";
  return std::string(text).replace(text.find(before) + before.size(), 4, handle);
}

TEST(StrepTest, WritesEveryShape) {
  OnlyCollection collection;
  for (int i = 0; i < 10; ++i) collection.memberIs(i, i);
  WithCollection beside;
  beside.memberIs(1, 1);
  const struct {
    Lumo::String strep;
    const char* expected;
  } cases[] = {
      {valueToStrep(Nothing()), ""},
      {valueToStrep(OnlyCollection()), "None"},
      {valueToStrep(collection), "None"},
      {valueToStrep(beside), "Value('Test::WithCollection', ** {'member': None, 'number': 0})"},
      {valueToStrep(Plain()),
       "Value('Test::Plain', ** {'pair': Value('Test::Pair', ** {'grade': Value('Test::Grade', 0), "
       "'word': Value('Test::Word', '')}), 'flag': False, 'number': 0, 'large': 0, 'real': 0, "
       "'text': '', 'color': Value('Test::Color', 'red'), 'handle': None, 'view': None})"},
      {valueToStrep(true), "True"},
      {valueToStrep(-5), "-5"},
      {valueToStrep(0.5), "0.5"},
      {valueToStrep(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615"},
      {valueToStrep(Lumo::String("it's a \\")), "'it\\'s a \\\\'"},
      {valueToStrep(Lumo::String(std::string_view("\0\n\xff", 3))), "'\\x00\\x0a\\xff'"},
      {valueToStrep(static_cast<Color>(7)), "Value('Test::Color', 7)"},
  };
  for (const auto& [strep, expected] : cases) EXPECT_EQ(strep.str(), expected);
  const auto thing = Lumo::newEntity<Thing>();
  const auto name = valueToStrep(thing).str();
  EXPECT_TRUE(name.starts_with("Ptr('Test::Thing', 0x")) << name;
  EXPECT_EQ(name.find("mark"), name.npos) << "an entity is named, not written out";
}

Plain randomPlain(std::mt19937_64& random) {
  Plain plain;
  Pair pair;
  pair.gradeIs(Grade(static_cast<std::uint8_t>(random() % 7)));
  std::string letters, bytes;
  for (auto i = random() % 6; i > 0; --i) letters += static_cast<char>('a' + random() % 26);
  for (auto i = random() % 20; i > 0; --i) bytes += static_cast<char>(random());
  pair.wordIs(*Word::parse(letters));
  plain.pairIs(pair);
  plain.flagIs(random() & 1);
  plain.numberIs(static_cast<int>(random()));
  plain.largeIs(random() >> random() % 64);
  plain.realIs(std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 200) - 100));
  plain.textIs(bytes);
  plain.colorIs(random() & 1 ? Color::red : Color::green);
  return plain;
}

TEST(StrepTest, ReadsBackWhatItWrites) {
  std::mt19937_64 random(1);
  const auto thing = Lumo::newEntity<Thing>();
  for (int i = 0; i < 2000; ++i) {
    Plain plain = randomPlain(random);
    if (random() & 1) plain.handleIs(thing);
    if (random() & 1) plain.viewIs(thing);
    const auto text = valueToStrep(plain).str();
    const auto back = readAll<Plain>(text);
    ASSERT_TRUE(back == plain) << text;
    ASSERT_EQ(valueToStrep(back).str(), text);
  }
}

TEST(StrepTest, HasOneTextForEachValue) {
  const struct {
    std::string (*refused)(const std::string&);
    const char* text;
    const char* message;
  } cases[] = {
      {refusal<int>, "007", "position 0: write it as 7"},
      {refusal<int>, "-0", "position 0: write it as 0"},
      {refusal<int>, "+7", "position 0: expected a number of type int"},
      {refusal<int>, "2147483648", "position 0: expected a number of type int"},
      {refusal<int>, "", "position 0: expected a number of type int"},
      {refusal<int>, "7 ", "position 1: expected the end, found ' '"},
      {refusal<double>, "0.50", "position 0: write it as 0.5"},
      {refusal<bool>, "true", "position 0: expected True or False"},
      {refusal<bool>, "Truer", "position 0: expected True or False"},
      {refusal<Lumo::String>, "x", "position 0: expected '\\'', found 'x'"},
      {refusal<Lumo::String>, "'x", "position 2: expected '\\'', found the end"},
      {refusal<Lumo::String>, "'\\x4'", "position 1: a backslash that begins no escape"},
      {refusal<Lumo::String>, "'\\", "position 1: a backslash that begins no escape"},
      {refusal<Lumo::String>, "'\\x41'", "position 0: write it as 'A'"},
      {refusal<Lumo::String>, "'\n'", "position 0: write it as '\\x0a'"},
      {refusal<Grade>, "Value('Test::Grade', 7)", "position 0: no grade is above 6"},
      {refusal<Grade>, "Value('Test::Grade', 256)",
       "position 0: 256 is outside the range of Test::Grade"},
      {refusal<Grade>, "Value('Test::Grade', '6')",
       "position 0: expected a number of type Test::Grade"},
      {refusal<Word>, "Value('Test::Word', 'aB')",
       "position 0: write it as Value('Test::Word', 'ab')"},
      {refusal<Word>, "Value('Test::Word', '7')", "position 0: not the text of a Test::Word"},
      {refusal<Word>, "Value('Test::Word', 7)", "position 0: expected a text in quotes"},
      {refusal<Word>, "Value('Test::Grade', '')",
       "position 0: expected 'Value(\\'Test::Word\\', ', found 'Value(\\'Test::Grade\\','..."},
      {refusal<Color>, "Value('Test::Color', 'blue')",
       "position 0: Test::Color has no value 'blue', but: red, green"},
      {refusal<Color>, "Value('Test::Color', 7)", "position 0: expected a text in quotes"},
      {refusal<Nothing>, "None", "position 0: expected the end, found 'None'"},
  };
  for (const auto& [refused, text, message] : cases) EXPECT_EQ(refused(text), message) << text;
}

TEST(StrepTest, ErrorsNameTheAttributesFromTheOutside) {
  const std::string good = valueToStrep(Plain()).str();
  const struct {
    const char* part;
    const char* instead;
    const char* message;
  } cases[] = {
      {"'Test::Grade', 0", "'Test::Grade', 9",
       "attribute pair, attribute grade, position 66: no grade is above 6"},
      {"'flag': False", "'flag': 0", "attribute flag, position 134: expected True or False"},
      {", 'flag'", ",  'flag'",
       "position 124: expected ', \\'flag\\': ', found ',  \\'flag\\': False, \\'n'..."},
      {"'large': 0", "'large': -1", "attribute large, position 163: expected a number of type U64"},
  };
  for (const auto& [part, instead, message] : cases) {
    auto text = good;
    text.replace(text.find(part), std::string_view(part).size(), instead);
    EXPECT_EQ(refusal<Plain>(text), message) << text;
  }
}

TEST(StrepHandleTest, ATextNamesAnEntityWhileItLives) {
  auto thing = Lumo::newEntity<Thing>();
  const auto text = plainWith(valueToStrep(thing).str());
  EXPECT_TRUE(readAll<Plain>(text).handle() == thing);
  EXPECT_EQ(thing->references(), 1u) << "what was read is gone again";
  const auto held = readAll<Plain>(text);
  EXPECT_EQ(thing->references(), 2u);
  thing = held.handle();
  EXPECT_TRUE(readAll<Plain>(text).handle() == thing);
}

TEST(StrepHandleTest, NothingElseIsFollowed) {
  auto dying = Lumo::newEntity<Thing>();
  const auto thing = Lumo::newEntity<Thing>(), unwritten = Lumo::newEntity<Thing>();
  const auto dead = valueToStrep(dying).str(), living = valueToStrep(thing).str();
  dying = {};
  const auto digits = [](const std::string& text) {
    return text.substr(text.find("0x") + 2, text.size() - text.find("0x") - 3);
  };
  char address[32];
  std::snprintf(address, sizeof address, "%p", static_cast<const void*>(unwritten.ptr()));
  const std::string start = "Ptr('Test::Thing', 0x";
  for (const std::string& text :
       {dead, start + (address + 2) + ")", start + "0)", start + "1)", start + ")",
        start + "0" + digits(living) + ")", start + "+" + digits(living) + ")",
        start + digits(living) + "0)", start + std::string(20, 'f') + ")",
        "Ptr('Test::Plain', 0x" + digits(living) + ")", living.substr(0, living.size() - 1)}) {
    EXPECT_THROW(readAll<Plain>(plainWith(text)), RangeException) << text;
  }
  EXPECT_EQ(refusal<Plain>(plainWith(dead)),
            "attribute handle, position " +
                std::to_string(plainWith("!").find('!') + start.size()) +
                ": no Test::Thing of this process stands there");
}

TEST(StrepHandleTest, AConstantHandleDoesNotBecomeChangeable) {
  const auto thing = Lumo::newEntity<Thing>();
  const auto asView = valueToStrep(Lumo::Ptr<const Thing>(thing)).str();
  EXPECT_EQ(Lumo::wrapAttrValue(Lumo::Ptr<const Thing>(thing))->strRep().str(), asView);
  EXPECT_THROW(readAll<Plain>(plainWith(asView)), RangeException);
  Plain plain;
  plain.viewIs(thing);
  EXPECT_TRUE(readAll<Plain>(valueToStrep(plain).str()).view() == thing);
  EXPECT_THROW(readAll<Plain>(plainWith(asView)), RangeException)
      << "reading it made no difference";
  EXPECT_EQ(Lumo::wrapAttrValue(thing)->strRep().str(), asView);
  EXPECT_TRUE(readAll<Plain>(plainWith(asView)).handle() == thing) << "written as changeable";
}

TEST(StrepHandleTest, AnEntityIsFoundUnderEachTypeThatItWasWrittenAs) {
  const auto special = Lumo::newEntity<SpecialThing>();
  for (int i = 0; i < 2; ++i) {
    const auto own = valueToStrep(special).str();
    const auto base = valueToStrep(Lumo::Ptr<Thing>(special)).str();
    EXPECT_TRUE(readAll<Lumo::Ptr<SpecialThing>>(own) == special);
    EXPECT_TRUE(readAll<Lumo::Ptr<Thing>>(base) == special);
  }
}

} // namespace
