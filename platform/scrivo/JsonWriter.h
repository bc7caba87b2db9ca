// The model as a stream of JSON: nesting, commas, keys and values. Nothing of the model is kept but
// the path from its root to the place of writing.
#pragma once

#include "scrivo/Printer.h"

namespace scrivo {

class OutputBuffer;

/// What a level of the model may hold.
enum class Holds : std::uint8_t { members, elements, oneValue };

/// A kind of level: its brackets, what stands in it and what is said when another kind is closed
/// in its place. There is one object of each, known by its address.
struct LevelRule {
  char open;  ///< NUL for none
  char close; ///< NUL for none
  Holds holds;
  const char* misuse;
};

/// Writes a model call by call. A call that breaks the nesting fails an assertion.
class JsonWriter {
 public:
  /// The levels that may be open at once; a display has about six.
  static constexpr int depthLimit = 32;

  explicit JsonWriter(OutputBuffer& out);

  void openDocument();
  /// Opens a level under a name of the level around it.
  void openNamed(const LevelRule& rule, const char* name);
  /// Opens an entry, whose name is the value of the key, on a line of its own if it is no simple
  /// one.
  void openEntry(const LevelRule& rule, const Attr32Info& key);
  void openElement(const LevelRule& rule);
  void close(const LevelRule& rule);
  void add(const AttrInfo& info);
  /// The value of the open simple entry is written by someone else, behind what stands here.
  void valueFollows();
  /// The innermost level that is open.
  const LevelRule* level() const { return top_->rule; }
  /// How many levels are open.
  int depth() const { return static_cast<int>(top_ - levels_); }
  /// Whether something stands in the innermost level already, so that a comma comes next.
  bool hasContent() const { return top_->hasContent; }
  void hasContentIs(bool hasContent) { top_->hasContent = hasContent; }
  /// Fails an assertion if a level is still open.
  void assertComplete() const;

 private:
  struct Level {
    const LevelRule* rule;
    bool hasContent;
  };

  void separate();
  void beginMember();
  void push(const LevelRule& rule);
  void putKey(const AttrInfo& info);
  void putEntryName(const Attr32Info& key);
  void putValue(const AttrInfo& info);

  OutputBuffer& out_;
  Level levels_[depthLimit + 1] = {}; // the first is what stands around the whole
  Level* top_;
};

} // namespace scrivo
