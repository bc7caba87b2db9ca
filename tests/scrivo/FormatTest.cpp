#include "Capture.h"
#include "support/Expect.h"

#include <climits>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

using scrivo::findFormatFault;
using scrivo::RuntimeFormat;
using scrivo::Tag;

template <class... Args>
std::string printed(const char* format, const Args&... args) {
  return capture(scrivo::textFormat,
                 [&](scrivo::Printer& p) { p.addFrills(RuntimeFormat(format), args...); });
}

template <class... Args>
std::string reference(const char* format, const Args&... args) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
  std::string text(static_cast<std::size_t>(snprintf(nullptr, 0, format, args...)) + 1, '\0');
  snprintf(text.data(), text.size(), format, args...);
#pragma GCC diagnostic pop
  text.pop_back();
  return text;
}

template <class... Args>
void expectAsPrintf(const char* format, const Args&... args) {
  EXPECT_EQ(printed(format, args...), reference(format, args...)) << format;
}

constexpr bool isFault(const char* format, std::initializer_list<Tag> tags) {
  return findFormatFault(format, tags.begin(), static_cast<unsigned>(tags.size())).what != nullptr;
}

// The compiler rejects a literal by this very check.
static_assert(!isFault("", {Tag::int32}));
static_assert(!isFault("100%%", {}));
static_assert(!isFault("%d", {Tag::any}));
static_assert(!isFault("%u", {Tag::int32}));
static_assert(!isFault("%*c", {Tag::uint32, Tag::int32}));
static_assert(!isFault("%-5s%05d%5.2f%zu%ld",
                       {Tag::text, Tag::int32, Tag::real, Tag::uint64, Tag::int64}));
static_assert(isFault("%d %d", {Tag::int32}));
static_assert(isFault("%s", {Tag::int32}));
static_assert(isFault("%d", {Tag::text}));
static_assert(isFault("%f", {Tag::uint32}));
static_assert(isFault("%d", {Tag::real}));
static_assert(isFault("%u", {Tag::uint64}));
static_assert(isFault("%*d", {Tag::int32}));
static_assert(isFault("%*d", {Tag::int64, Tag::int32}));
static_assert(isFault("%", {Tag::int32}));
static_assert(isFault("%n", {Tag::any}));
static_assert(isFault("%ls", {Tag::text}));
static_assert(isFault("%llld", {Tag::int64}));
static_assert(isFault("%99999d", {Tag::int32}));

TEST(Format, PrintsIntegersAsPrintf) {
  const char* const formats[] = {"%d",       "%i",     "[%5d]",  "[%-5d]",  "[%05d]", "%u",
                                 "%x",       "%X",     "[%08X]", "%.3d",    "%.0d",   "[%8.3d]",
                                 "[%-8.3x]", "%08.3d", "%-05d",  "a%%b%d%%"};
  const int numbers[] = {0, 1, -1, 9, 10, 42, -99999, 0xbeef, INT_MAX, INT_MIN};
  for (const char* const format : formats) {
    for (const int number : numbers) expectAsPrintf(format, number);
  }
}

TEST(Format, PrintsWideIntegersAsPrintf) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 2000; ++i) {
    const std::uint64_t bits = random() >> (random() % 64);
    expectAsPrintf("%llu", static_cast<unsigned long long>(bits));
    expectAsPrintf("%lu|%zu", static_cast<unsigned long>(bits), static_cast<std::size_t>(bits));
    expectAsPrintf("[%-22ld]", -static_cast<long>(bits >> 1));
    expectAsPrintf("[%022lld]", -static_cast<long long>(bits >> 1));
    expectAsPrintf("%d %u %x", static_cast<int>(bits), static_cast<unsigned>(bits),
                   static_cast<unsigned>(bits));
  }
  expectAsPrintf("%lld", std::numeric_limits<long long>::min());
}

TEST(Format, PrintsDoublesAsPrintf) {
  const char* const formats[] = {"%f",        "%.0f",      "%.1f",   "[%12.3f]",
                                 "[%-12.3f]", "[%012.3f]", "%.1100f"};
  const double numbers[] = {0.0,    -0.0,     0.5,       1.5,
                            2.675,  -3.14159, 1e22,      1.7976931348623157e308,
                            5e-324, HUGE_VAL, -HUGE_VAL, NAN};
  for (const char* const format : formats) {
    for (const double number : numbers) expectAsPrintf(format, number);
  }
  std::mt19937_64 random(11);
  for (int i = 0; i < 2000; ++i) {
    expectAsPrintf("%f %.3f", std::bit_cast<double>(random()), static_cast<double>(i) / 7);
  }
}

TEST(Format, PrintsTextAsPrintf) {
  for (const char* const format : {"%s", "[%20s]", "[%-20s]", "%.3s", "[%-6.3s]", "[%.0s]"}) {
    for (const char* const text : {"", "a", "abcdef", "Ethernet12/1.100 with more"}) {
      expectAsPrintf(format, text);
      EXPECT_EQ(printed(format, Lumo::String(text)), reference(format, text));
      EXPECT_EQ(printed(format, std::string_view(text)), reference(format, text));
    }
  }
  EXPECT_EQ(printed("%s", std::string_view("route-map", 5)), "route");
  EXPECT_EQ(printed("%s", static_cast<const char*>(nullptr)), "(null)");
}

TEST(Format, TakesWidthsAndPrecisionsFromArguments) {
  for (const int width : {-12, -1, 0, 1, 12}) {
    expectAsPrintf("[%*d]", width, -42);
    expectAsPrintf("[%*s via]", width, "");
    expectAsPrintf("[%*c]", width, ' ');
    expectAsPrintf("[%.*s]", width, "abcdef");
    expectAsPrintf("[%-*.*f]", 9, width < 0 ? width : 2, 2.5);
  }
  expectAsPrintf("B I%c%5s%%[%d/%u] %s%lu\n", 'c', "x", -1, 7u, "end", 8ul);
  EXPECT_EQ(printed("%d.", 1, 2, "three"), "1.") << "words behind the last slot are not shown";
}

TEST(Format, RejectsAFormatThatDoesNotFit) {
  EXPECT_THROW(printed("%s", 1), Lumo::InternalException);
  EXPECT_THROW(printed("%d %d", 1), Lumo::InternalException);
  EXPECT_EQ(support::messageOf<Lumo::InternalException>([] { printed("%d then %q", 1, 2); }),
            "the format \"%d then %q\" does not fit its arguments: slot 2: it is not a known "
            "conversion");
}

TEST(Format, ChecksWordsOfUnknownTypeWhenPrinting) {
  const auto walk = [](scrivo::Printer& p) {
    scrivo::IntAttrInfo number(p, "number");
    number.setValue(5);
    const scrivo::Attr32Info& base = number;
    p.addAttributes("%d", 1, base.getArg());
    EXPECT_THROW(p.addAttributes("%s", 1, base.getArg()), Lumo::InternalException);
  };
  EXPECT_EQ(capture(scrivo::textFormat, walk), "5");
}

} // namespace
