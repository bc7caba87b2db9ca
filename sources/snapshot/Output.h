// Writes JSON text: nesting, commas, line breaks and escapes are its business.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace sources::snapshot {

/// A JSON text in the making. Members of a `Layout::lines` collection stand on a line each, those
/// of a `Layout::row`, and of all collections inside it, side by side.
class Output {
 public:
  using Sink = std::function<void(std::string_view bytes)>;
  enum class Layout { lines, row };

  /// The text goes to `sink` in pieces; an exception of the sink passes through.
  explicit Output(Sink sink) : sink_(std::move(sink)) {}

  /// A collection for the time that the scope lives.
  class Scope {
   public:
    Scope(Output& out, std::string_view brackets, Layout layout);
    ~Scope() noexcept(false);
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    Output& out_;
    char closing_;
    int exceptions_;
  };
  [[nodiscard]] Scope object(Layout layout) { return {*this, "{}", layout}; }
  [[nodiscard]] Scope array(Layout layout) { return {*this, "[]", layout}; }

  void key(std::string_view name);
  void text(std::string_view value);
  void number(std::int64_t value) { plain(std::to_string(value)); }
  void number(std::uint64_t value) { plain(std::to_string(value)); }
  void boolean(bool value) { plain(value ? "true" : "false"); }
  void null() { plain("null"); }
  /// Ends the text and hands its last piece over.
  void finish();

 private:
  struct Level {
    Layout layout;
    bool empty;
  };
  void open(char bracket, Layout layout);
  void close(char bracket);
  void member();
  void lineBreak();
  void plain(std::string_view value);

  Sink sink_;
  std::string buffer_;
  std::vector<Level> levels_;
  bool afterKey_ = false;
};

} // namespace sources::snapshot
