#include "command/terminal/Screen.h"

#include <gtest/gtest.h>

namespace {

using command::terminal::RowCounter;

TEST(RowCounter, CountsWhatATerminalOfTenColumnsShows) {
  const struct {
    std::string_view text;
    std::size_t rows;
  } cases[] = {
      {"", 0},
      {"\n", 1},
      {"0123456789\n", 1},
      {"01234567890\n", 2},
      {"012345678901234567890", 2},
      {"\x1b[1;31m0123456789\x1b[0m\n", 1},
      {"\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4\n", 1}, // 12 bytes, 6 characters
  };
  for (const auto& [text, rows] : cases) {
    RowCounter whole(10), bytewise(10);
    whole.add(text);
    for (const char byte : text) bytewise.add({&byte, 1});
    EXPECT_EQ(whole.rows(), rows) << text;
    EXPECT_EQ(bytewise.rows(), rows) << text;
  }
}

} // namespace
