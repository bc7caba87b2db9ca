// The printer: one walk over the data of a display makes lines of text or a model, by the format
// number that the printer was opened with.
//
//     scrivo::Printer printer(fd, format);
//     scrivo::StringAttrInfo prefix(printer, "prefix");
//     scrivo::UintAttrInfo metric(printer, "metric");
//     printer.startDict("routes");
//     prefix.setValue("10.0.0.0/8");
//     metric.setValue(20);
//     printer.startDictEntry(prefix);
//     printer.addAttributes("%s [%u]", 2, prefix.getArg(), metric.getArg());
//     printer.addFrills("\n");
//     printer.endDictEntry();
//     printer.endDict();
//
// Text shows the attributes and frills, with the colours of scrivo/Colour.h where those are in use;
// structure calls print nothing. The model is JSON without blanks, where each entry of a dictionary
// begins a line:
//
//     "routes":{
//     "10.0.0.0/8":{"prefix":"10.0.0.0/8","metric":20}}
//
// That is a fragment: between `start` and `end` the model is a whole document in braces with a line
// end; without them it is the members of an object, separated by commas, and the caller writes the
// braces around them.
//
// The printer checks at every call whether the user wants to stop (scrivo/Interrupt.h); it then
// drops what it has not written yet, throws sigintException, and is silent from there on: later
// calls do nothing. A reader that went away ends the output in the same way, provided that the
// process ignores SIGPIPE, and a failed write does with WriteException. A call that breaks the
// nesting fails an assertion that says what it wants.
#pragma once

#include "scrivo/AttrInfo.h"
#include "scrivo/Colour.h"
#include "scrivo/Exception.h"
#include "scrivo/Format.h"
#include "scrivo/Interrupt.h"
#include "scrivo/Stretch.h"

#include <array>
#include <memory>
#include <string>
#include <type_traits>

namespace scrivo {

/// The kinds of level that a model has.
struct LevelRule;
extern const LevelRule documentLevel, dictLevel, dictEntryLevel, simpleDictEntryLevel, listLevel,
    listEntryLevel, submodelLevel;

/// Output on a descriptor through one buffer of 64 KiB. What is printed never makes it grow. All
/// calls but those that say so may throw sigintException or WriteException, each once.
class LUMO_EXPORT Printer {
 public:
  /// Opens output on `fd`, which stays the caller's, in the given format (1 text, 2 model). The
  /// format is tested where attributes are set. The further words are part of the call that
  /// display code is written with; this printer has no use for them.
  Printer(int fd, unsigned int format, bool, bool, bool, unsigned int);
  /// The same, for callers that have nothing to say with the further words.
  Printer(int fd, unsigned int format) : Printer(fd, format, false, false, true, 0) {}
  /// Appends what it prints to a string, which outlives it, each time that it would write.
  Printer(std::string& output, unsigned int format);
  /// Writes the rest, unless `close` has done so or the output has failed. Does not throw.
  ~Printer();
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;

  /// The number that the printer was opened with. Does not throw.
  unsigned format() const { return format_; }

  // Structure is the model's alone: in text each of these costs two tests.
  void start() {
    if (hasStructure()) open(documentLevel);
  }
  void end() {
    if (hasStructure()) close(documentLevel);
  }
  /// An object under a name, whose members are dictionary entries.
  void startDict(const char* name) {
    if (hasStructure()) open(dictLevel, name);
  }
  /// Ends it; a level that is not the innermost stops the process.
  void endDict() {
    if (hasStructure()) close(dictLevel);
  }
  /// The key is the value of `key`, which must be set; numbers become strings.
  void startDictEntry(const Attr32Info& key) {
    if (hasStructure()) open(dictEntryLevel, key);
  }
  /// Ends the entry.
  void endDictEntry() {
    if (hasStructure()) close(dictEntryLevel);
  }
  /// The entry's value is the one attribute that is added before its end; null without any.
  void startSimpleDictEntry(const Attr32Info& key) {
    if (hasStructure()) open(simpleDictEntryLevel, key);
  }
  /// Ends the entry.
  void endSimpleDictEntry() {
    if (hasStructure()) close(simpleDictEntryLevel);
  }
  /// An array under a name.
  void startList(const char* name) {
    if (hasStructure()) open(listLevel, name);
  }
  /// Ends the array.
  void endList() {
    if (hasStructure()) close(listLevel);
  }
  /// An object in the array.
  void startListEntry() {
    if (hasStructure()) open(listEntryLevel);
  }
  /// Ends that object.
  void endListEntry() {
    if (hasStructure()) close(listEntryLevel);
  }
  /// An object under a name, whose members are attributes.
  void startSubmodel(const char* name) {
    if (hasStructure()) open(submodelLevel, name);
  }
  /// Ends that object.
  void endSubmodel() {
    if (hasStructure()) close(submodelLevel);
  }

  /// Adds `count` attributes: through the format in text, each under its key in the model, whether
  /// or not the format shows it.
  template <IsWord... Words>
  void addAttributes(std::type_identity_t<FormatFor<Words...>> format,
                     std::type_identity_t<WordCount<sizeof...(Words)>>, Words... words) {
    if (format.text().isEmpty() && !hasStructure()) return;
    add(format.text(), std::array<AttrWord, sizeof...(Words)>{words...}.data(), sizeof...(Words));
  }
  /// The same for a format, and maybe a count, that is not known when compiling. Fails an assertion
  /// if the count is not the number of words.
  template <IsWord... Words>
  void addAttributes(RuntimeFormat format, int count, Words... words) {
    LUMO_ASSERT(count == int{sizeof...(Words)}, "the count is the number of words");
    addArgs<Words...>(format, words...);
  }
  /// As `addAttributes`, where the number of words is the count.
  template <IsWord... Words>
  void addArgs(std::type_identity_t<FormatFor<Words...>> format, Words... words) {
    if (format.text().isEmpty() && !hasStructure()) return;
    add(format.text(), std::array<AttrWord, sizeof...(Words)>{words...}.data(), sizeof...(Words));
  }

  /// Prints plain values and words in text; does nothing in the model.
  template <class... Args>
  void addFrills(std::type_identity_t<FormatFor<std::decay_t<Args>...>> format,
                 const Args&... args) {
    if (format_ != textFormat) return;
    print(format.text(), std::array<AttrWord, sizeof...(Args)>{toWord(args)...}.data(),
          sizeof...(Args));
  }

  /// Prints lines of text that warn, as they are; does nothing in the model.
  void addWarning(std::string_view lines);

  /// Prints what `print()` prints, once: a stretch that is kept is put again, byte for byte but for
  /// its margins. `print` ends in the level of the model that it begins in, and may flush; where it
  /// throws, nothing is kept. Inside another stretch that is being printed, it is printed each
  /// time. Fails an assertion if the stretch belongs elsewhere.
  template <class Print>
  void addStretch(Stretch& stretch, Print&& print) {
    if (stretch.isKept()) return put(stretch);
    Recording recording(*this, stretch);
    print();
    recording.keep();
  }

  /// How far the lines below this one stand in, in columns; it prints nothing.
  void marginIs(std::uint32_t columns) { margin_ = columns; }
  /// Prints blanks to so many columns behind the margin, in text.
  void addIndent(std::uint32_t columns = 0) {
    if (format_ == textFormat) indent(columns);
  }

  /// Tells that another printer on the same descriptor now writes a document of its own, `start` to
  /// `end`, as the value of the open simple entry; writes out what stands ahead of it. Fails an
  /// assertion where the model has no such entry open.
  void awaitDocument();

  /// How full the buffer is, in percent (0 to 100).
  int fullness();
  /// Writes out what is buffered.
  void ioflush();
  /// Writes out what is buffered and raises what the destructor would hide. The end of the output:
  /// what is printed after it fails an assertion. A second call does nothing.
  void close();

 private:
  struct Body;

  /// Keeps what is printed in its time, if `keep` is called.
  class LUMO_EXPORT Recording {
   public:
    Recording(Printer& printer, Stretch& stretch);
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;
    void keep();

   private:
    Printer& printer_;
    Stretch* stretch_; ///< null inside another recording
  };

  /// False in text, where structure and what has no text are nothing; but an interrupt is seen.
  bool hasStructure() const { return format_ != textFormat || interruptRequested(); }
  bool isAlive();
  bool takesText() { return isAlive() && format_ == textFormat; }
  bool takesModel() { return isAlive() && format_ == modelFormat; }
  void open(const LevelRule& rule);
  void open(const LevelRule& rule, const char* name);
  void open(const LevelRule& rule, const Attr32Info& key);
  void close(const LevelRule& rule);
  void add(FormatText format, const AttrWord* words, unsigned count);
  void print(FormatText format, const AttrWord* words, unsigned count);
  void put(const Stretch& stretch);
  void indent(std::uint32_t columns);

  unsigned format_;
  std::uint32_t margin_ = 0;
  std::unique_ptr<Body> body_;
};

} // namespace scrivo
