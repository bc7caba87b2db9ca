// Lines that a user types and edits.
#pragma once

#include "command/shell/Assistant.h"
#include "command/shell/HistoryFile.h"
#include "command/shell/LineSource.h"

#include <histedit.h>
#include <memory>

namespace command::shell {

/// A terminal on standard input and output. From here on an interrupt is for what the shell runs,
/// never for the shell; at the prompt Ctrl-C is a key that drops the line.
class Terminal : public LineSource {
 public:
  explicit Terminal(const Assistant& assistant);

  std::optional<std::string> next() override;
  bool goesOnAfter(const std::string& line, int status) override;
  int status() const override { return success; }

 private:
  static char* prompt(EditLine* editor);
  static unsigned char complete(EditLine* editor, int key);
  static unsigned char help(EditLine* editor, int key);
  static unsigned char drop(EditLine* editor, int key);

  void bindKeys();
  void remember(const std::string& line);

  const Assistant& assistant_;
  HistoryFile file_;
  std::unique_ptr<::History, void (*)(::History*)> history_;
  std::unique_ptr<EditLine, void (*)(EditLine*)> editor_;
  std::string prompt_;
  bool dropped_ = false;
};

} // namespace command::shell
