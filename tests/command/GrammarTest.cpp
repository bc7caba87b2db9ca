// The table of the commands, and what may come next by it.
#include "command/Commands.h"
#include "command/grammar/Next.h"
#include "command/grammar/Parser.h"
#include "command/grammar/UsageError.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace command;
using grammar::Kind;

std::vector<std::string> split(const std::string& text) {
  std::vector<std::string> words;
  for (std::size_t at = 0; at < text.size();) {
    const auto end = std::min(text.find(' ', at), text.size());
    words.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return words;
}

/// An argument each, as a shell hands them over.
std::vector<const char*> pointersTo(const std::vector<std::string>& words) {
  std::vector<const char*> pointers;
  for (const auto& word : words) pointers.push_back(word.c_str());
  return pointers;
}

grammar::Next nextAfter(const std::vector<std::string>& words) {
  return grammar::next(commandGrammar(), pointersTo(words));
}

/// The choices in a line, arguments in brackets; "." at the end where the command may end.
std::string shown(const grammar::Next& next) {
  std::string text;
  for (const auto& choice : next.choices) {
    const auto word = choice.word.empty()
                          ? "<" + std::string(grammar::rowOf(choice.kind).placeholder) + ">"
                          : std::string(choice.word);
    text += (text.empty() ? "" : " ") + word;
  }
  return text + (next.mayEnd ? " ." : "");
}

const std::string everywhere = " --state --format --color --no-pager --help";
const std::string listing =
    " --state --format --color --no-pager --timing --older-nexthop-groups --help";
const std::string protocols =
    "aggregate bgp connected dhcp dynamic isis kernel martian ospf ospf3 rip "
    "static vcs";

struct Case {
  std::string words;
  std::string next;
};

TEST(Grammar, KnowsWhatMayComeNext) {
  const std::vector<Case> cases = {
      {"", "show diff check clear static watch snapshot types help" + everywhere + " --version"},
      {"--format json",
       "show diff check clear static watch snapshot types help --state --color --no-pager --help "
       "--version"},
      {"show", "ip ipv6 nexthop-group running-config static state" + everywhere},
      {"cl st", "interface" + everywhere},
      {"sh ip ro", "vrf <ADDRESS | PREFIX> detail interface " + protocols +
                       " host summary where |" + listing + " ."},
      {"show ip route vrf", "all <NAME|all>" + listing},
      {"show ip route 10.0.0.0/8 st",
       "vrf longer-prefixes detail interface " + protocols + " where |" + listing + " ."},
      {"show ip route where", "<EXPRESSION...>" + listing},
      {"show ip route bgp where not vias", "<EXPRESSION...> |" + listing + " ."},
      {"show ipv6 route vrf red det ::/0 longer-prefixes",
       "interface aggregate bgp connected dhcp dynamic isis kernel martian ospf3 rip static where "
       "|" +
           listing + " ."},
      {"show ip route longer-prefixes",
       "vrf <ADDRESS | PREFIX> detail interface " + protocols + " where" + listing},
      {"show ip route host", "vrf |" + listing + " ."},
      {"show ip route vrf red su", "|" + listing + " ."},
      {"show nexthop-group",
       "name <NAME> vrf summary | --state --format --color --no-pager --counters --help ."},
      {"show nexthop-group name vrf",
       "vrf | --state --format --color --no-pager --counters --help ."},
      {"show nexthop-group --counters summ", "vrf |" + everywhere + " ."},
      {"check address", "<ADDRESS/LENGTH>" + everywhere},
      {"check address 10.0.0.1/24 replace", "interface secondary" + everywhere},
      {"check rd 65000:1 vrf red", "|" + everywhere + " ."},
      {"static load new.txt", "| --state --format --color --no-pager --into --dry-run --help ."},
      {"help show", "ip ipv6 nexthop-group running-config static state |" + everywhere + " ."},
      {"help check rd", "|" + everywhere + " ."},
      {"types |", "text json"},
      {"types | json", "--state --color --no-pager --help ."},
      {"types --format", "text json"},
      {"--state", "<SOURCE>"},
      {"types --", "<NAME> | ."},
  };
  for (const Case& c : cases) EXPECT_EQ(shown(nextAfter(split(c.words))), c.next) << c.words;
}

TEST(Grammar, SaysNothingOfWhatCannotBe) {
  for (const char* words : {"show foo", "s", "show |", "show ip route vrf red vrf", "--nope",
                            "show ip route host detail", "check rd 1", "types | xml"}) {
    EXPECT_THROW(nextAfter(split(words)), UsageError) << words;
  }
}

std::string sampleOf(Kind kind) {
  switch (kind) {
  case Kind::ip4Target:
  case Kind::target:
    return "10.0.0.0/8";
  case Kind::ip6Target:
    return "2001:db8::/32";
  case Kind::address:
    return "10.0.0.1";
  case Kind::addressWithLength:
    return "10.0.0.1/24";
  case Kind::routeDistinguisher:
    return "65000:1";
  default:
    return "7";
  }
}

bool isUnderstood(const std::vector<std::string>& words) {
  try {
    const auto& table = commandGrammar();
    grammar::parse(table, grammar::splitArguments(table, pointersTo(words)));
    return true;
  } catch (const UsageError&) {
    return false;
  }
}

/// Follows every choice from these words on; counts the command lines on the way.
int follow(std::vector<std::string>& words, std::size_t most) {
  const auto next = nextAfter(words);
  EXPECT_EQ(next.mayEnd, isUnderstood(words)) << testing::PrintToString(words);
  EXPECT_TRUE(next.mayEnd || !next.choices.empty()) << testing::PrintToString(words);
  int count = 1;
  if (words.size() == most) return count;
  for (const auto& choice : next.choices) {
    EXPECT_FALSE(choice.help.empty()) << choice.word << testing::PrintToString(words);
    if (choice.word.starts_with('-') || choice.word == "|") continue;
    words.push_back(choice.word.empty() ? sampleOf(choice.kind) : std::string(choice.word));
    count += follow(words, most);
    words.pop_back();
  }
  return count;
}

TEST(Grammar, UnderstandsWhatItOffers) {
  constexpr std::size_t mostWords = 6;
  std::vector<std::string> words;
  EXPECT_GT(follow(words, mostWords), 1000);
}

TEST(Grammar, NamesOnlyPartsAndOptionsThatAreThere) {
  for (const auto& command : commandGrammar().commands) {
    for (const auto& part : command.parts) {
      for (const auto other : {part.needs, part.beside}) {
        const auto isOther = [&](const grammar::Part& known) { return known.name == other; };
        if (other.empty()) continue;
        EXPECT_TRUE(std::ranges::any_of(command.parts, isOther)) << command.path << ": " << other;
        EXPECT_FALSE(part.why.empty()) << command.path << ": " << part.name;
      }
    }
    for (const auto name : command.options) {
      const auto* const option = grammar::findOption(commandGrammar(), name);
      ASSERT_NE(option, nullptr) << command.path << ": " << name;
      EXPECT_EQ(option->scope, grammar::Scope::named) << name;
    }
    if (command.refused.empty()) continue;
    const auto* const refused = grammar::findOption(commandGrammar(), command.refused);
    ASSERT_NE(refused, nullptr) << command.path;
    EXPECT_EQ(refused->scope, grammar::Scope::all) << command.path;
    EXPECT_FALSE(command.why.empty()) << command.path;
  }
}

TEST(Grammar, KeepsTheCommandsOfTheShellToIt) {
  std::string own;
  for (const auto& command : shellGrammar().commands.subspan(commandGrammar().commands.size())) {
    own += std::string(command.path) + " ";
  }
  EXPECT_EQ(own, "state vrf exit quit ");
}

TEST(Grammar, HasNoCommandInsideAnother) {
  const auto commands = shellGrammar().commands; // those of the program among them
  for (const auto& command : commands) {
    const auto words = std::string(command.path) + " ";
    for (const auto& other : commands) {
      const bool isInside = (std::string(other.path) + " ").starts_with(words);
      EXPECT_EQ(isInside, &other == &command) << command.path << ", " << other.path;
    }
  }
}

} // namespace
