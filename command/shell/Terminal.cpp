#include "command/shell/Terminal.h"

#include "command/shell/Child.h"

#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace command::shell {

namespace {

using Words = std::vector<std::string>;

constexpr int mostRecalled = 1000;

/// Has the editor count characters, in place of bytes, in what is typed.
void useCharacters() {
  std::setlocale(LC_CTYPE, "");
  if (MB_CUR_MAX == 1) std::setlocale(LC_CTYPE, "C.UTF-8");
}

Terminal& terminalOf(EditLine* editor) {
  void* terminal = nullptr;
  el_get(editor, EL_CLIENTDATA, &terminal);
  return *static_cast<Terminal*>(terminal);
}

/// The line up to the cursor.
std::string typed(EditLine* editor) {
  const LineInfo* const line = el_line(editor);
  return {line->buffer, line->cursor};
}

/// What all the words begin with.
std::string commonBeginning(const Words& words) {
  std::string common = words.front();
  for (const auto& word : words) {
    const auto [end, other] = std::mismatch(common.begin(), common.end(), word.begin(), word.end());
    common.erase(end, common.end());
  }
  return common;
}

std::size_t columnsOfTerminal() {
  constexpr std::size_t usual = 80;
  winsize size{};
  const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : usual;
}

void printInColumns(const Words& words) {
  std::size_t width = 0;
  for (const auto& word : words) width = std::max(width, word.size() + 2);
  const auto perLine = std::max<std::size_t>(columnsOfTerminal() / width, 1);
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool endsLine = (i + 1) % perLine == 0 || i + 1 == words.size();
    const auto padding = endsLine ? 0 : static_cast<int>(width - words[i].size());
    std::printf("%s%*s%s", words[i].c_str(), padding, "", endsLine ? "\n" : "");
  }
}

} // namespace

Terminal::Terminal(const Assistant& assistant)
    : assistant_(assistant),
      file_(historyPath()),
      history_(history_init(), history_end),
      editor_(nullptr, el_end) {
  setKeySignals(SIG_BLOCK);
  useCharacters();
  editor_.reset(el_init("rova", stdin, stdout, stderr));
  HistEvent event;
  history(history_.get(), &event, H_SETSIZE, mostRecalled);
  history(history_.get(), &event, H_SETUNIQUE, 1);
  for (const auto& line : file_.lines()) {
    history(history_.get(), &event, H_ENTER, line.c_str());
  }
  el_set(editor_.get(), EL_CLIENTDATA, this);
  el_set(editor_.get(), EL_HIST, history, history_.get());
  el_set(editor_.get(), EL_PROMPT, &Terminal::prompt);
  // A change of the terminal's size, and a signal that ends the program, which it leaves as it was.
  el_set(editor_.get(), EL_SIGNAL, 1);
  bindKeys();
}

void Terminal::bindKeys() {
  EditLine* const editor = editor_.get();
  el_set(editor, EL_EDITOR, "emacs");
  el_set(editor, EL_SETTY, "-d", "-isig", nullptr); // Ctrl-C is a key
  el_set(editor, EL_ADDFN, "rova-complete", "Complete a word", &Terminal::complete);
  el_set(editor, EL_ADDFN, "rova-help", "List what may follow", &Terminal::help);
  el_set(editor, EL_ADDFN, "rova-drop", "Drop the line", &Terminal::drop);
  el_set(editor, EL_BIND, "^I", "rova-complete", nullptr);
  el_set(editor, EL_BIND, "?", "rova-help", nullptr);
  el_set(editor, EL_BIND, "^C", "rova-drop", nullptr);
  el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
}

char* Terminal::prompt(EditLine* editor) { return terminalOf(editor).prompt_.data(); }

unsigned char Terminal::complete(EditLine* editor, int) {
  const auto text = typed(editor);
  if (endsInQuotes(text)) return CC_NORM;
  const auto [begun, words] = terminalOf(editor).assistant_.candidates(text);
  if (words.empty()) return CC_REFRESH_BEEP;
  const bool isWhole = words.size() == 1 && !words.front().ends_with('/');
  const auto more = commonBeginning(words).substr(begun.size()) + (isWhole ? " " : "");
  if (!more.empty()) return el_insertstr(editor, more.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
  if (words.size() == 1) return CC_NORM;
  std::puts("");
  printInColumns(words);
  return CC_REDISPLAY;
}

unsigned char Terminal::help(EditLine* editor, int) {
  const auto text = typed(editor);
  if (endsInQuotes(text)) return el_insertstr(editor, "?") == 0 ? CC_REFRESH : CC_ERROR;
  std::printf("?\n%s", terminalOf(editor).assistant_.help(text).c_str());
  return CC_REDISPLAY;
}

unsigned char Terminal::drop(EditLine* editor, int) {
  std::puts("^C");
  terminalOf(editor).dropped_ = true;
  return CC_NEWLINE;
}

std::optional<std::string> Terminal::next() {
  prompt_ = assistant_.prompt();
  dropped_ = false;
  el_set(editor_.get(), EL_PREP_TERM, 1); // the editor would do so only once the prompt stands
  int count = 0;
  const char* const text = el_gets(editor_.get(), &count);
  if (dropped_) return "";
  if (!text || count <= 0) {
    std::puts("");
    return {};
  }
  std::string line(text);
  if (line.ends_with('\n')) line.pop_back();
  remember(line);
  return line;
}

void Terminal::remember(const std::string& line) {
  if (line.find_first_not_of(" \t") == line.npos) return;
  HistEvent event;
  history(history_.get(), &event, H_ENTER, line.c_str());
  file_.add(line);
}

bool Terminal::goesOnAfter(const std::string&, int status) {
  if (status == interrupted) std::puts(""); // behind the ^C that the terminal shows
  return true;
}

} // namespace command::shell
