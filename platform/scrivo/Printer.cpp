#include "scrivo/Printer.h"

#include "JsonWriter.h"
#include "Kept.h"
#include "OutputBuffer.h"
#include "TextFormat.h"

namespace scrivo {

struct Printer::Body {
  template <class Target>
  explicit Body(Target&& target) : out(target), json(out) {}

  OutputBuffer out;
  JsonWriter json;
  // Of the stretch that is being printed, if any:
  bool isRecording = false;
  int depth = 0; ///< the levels that were open when it began
  bool hadContent = false;
  std::string bytes;
  std::vector<Indent> indents;
};

Printer::Printer(int fd, unsigned int format, bool, bool, bool, unsigned int)
    : format_(format), body_(std::make_unique<Body>(fd)) {}

Printer::Printer(std::string& output, unsigned int format)
    : format_(format), body_(std::make_unique<Body>(output)) {}

Printer::~Printer() {
  try {
    body_->out.flush();
  } catch (const std::exception&) {
    // Whoever wants to hear of a failure here calls close() first.
  }
}

/// The start of every call: throws on an interrupt, and is false once the output has failed.
bool Printer::isAlive() {
  if (interruptRequested()) body_->out.interrupt();
  if (body_->out.isOpen()) return true;
  LUMO_ASSERT(!body_->out.isClosed(), "nothing is printed after close()");
  return false;
}

void Printer::open(const LevelRule& rule) {
  if (!takesModel()) return;
  &rule == &documentLevel ? body_->json.openDocument() : body_->json.openElement(rule);
}
void Printer::open(const LevelRule& rule, const char* name) {
  if (takesModel()) body_->json.openNamed(rule, name);
}
void Printer::open(const LevelRule& rule, const Attr32Info& key) {
  if (takesModel()) body_->json.openEntry(rule, key);
}
void Printer::close(const LevelRule& rule) {
  if (takesModel()) body_->json.close(rule);
}

void Printer::add(FormatText format, const AttrWord* words, unsigned count) {
  if (format_ == textFormat) return print(format, words, count);
  if (!takesModel()) return;
  for (const AttrWord* word = words; word != words + count; ++word) {
    LUMO_ASSERT(word->tag() == Tag::info, "an attribute is added to the printer it was made from");
    body_->json.add(word->info());
  }
}

void Printer::print(FormatText format, const AttrWord* words, unsigned count) {
  if (takesText()) printFormat(body_->out, format, words, count);
}

/// Each line is coloured by itself: a pager and a filter may show one without the others.
void Printer::addWarning(std::string_view lines) {
  if (!takesText()) return;
  OutputBuffer& out = body_->out;
  if (!usesColour()) return out.put(lines);
  while (!lines.empty()) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    putColoured(out, line, Colour::alarm);
    lines.remove_prefix(line.size());
    if (lines.empty()) return;
    out.put('\n');
    lines.remove_prefix(1);
  }
}

Printer::Recording::Recording(Printer& printer, Stretch& stretch)
    : printer_(printer), stretch_(printer.body_->isRecording ? nullptr : &stretch) {
  if (!stretch_) return;
  Body& body = *printer_.body_;
  body.isRecording = true;
  body.depth = body.json.depth();
  body.hadContent = body.json.hasContent();
  body.bytes.clear();
  body.indents.clear();
  body.out.beginCopy(body.bytes);
}

void Printer::Recording::keep() {
  if (!stretch_ || !printer_.isAlive()) return;
  Body& body = *printer_.body_;
  LUMO_ASSERT(body.json.depth() == body.depth, "a stretch ends in the level that it begins in");
  body.out.endCopy();
  const auto* const level = printer_.format_ == modelFormat ? body.json.level() : nullptr;
  if (!Stretch::Kept::fits(body.bytes, body.indents)) return; // it is printed each time
  stretch_->kept_ = Stretch::Kept::make({.owner = &printer_,
                                         .level = level,
                                         .length = 0,
                                         .indents = 0,
                                         .hadContent = body.hadContent,
                                         .hasContent = body.json.hasContent()},
                                        body.bytes, body.indents);
}

Printer::Recording::~Recording() {
  if (!stretch_) return;
  printer_.body_->out.endCopy();
  printer_.body_->isRecording = false;
}

void Printer::put(const Stretch& stretch) {
  if (!isAlive()) return;
  const Stretch::Kept& kept = *stretch.kept_;
  LUMO_ASSERT(kept.owner == this, "a stretch is put by the printer that printed it");
  Body& body = *body_;
  if (format_ == modelFormat) {
    LUMO_ASSERT(body.json.level() == kept.level && body.json.hasContent() == kept.hadContent,
                "a stretch is put where one like it was printed");
    body.json.hasContentIs(kept.hasContent);
  }
  const char* const bytes = kept.bytes();
  std::size_t at = 0;
  for (const Indent* step = kept.firstIndent(); step != kept.lastIndent(); ++step) {
    body.out.put(bytes + at, step->at - at);
    indent(step->columns);
    at = step->at;
  }
  body.out.put(bytes + at, kept.length - at);
}

/// A stretch keeps where its margins are and not the blanks.
void Printer::indent(std::uint32_t columns) {
  if (!takesText()) return;
  Body& body = *body_;
  if (body.isRecording) {
    body.out.endCopy();
    body.indents.push_back({static_cast<std::uint32_t>(body.bytes.size()), columns});
  }
  body.out.fill(' ', std::size_t{margin_} + columns);
  if (body.isRecording) body.out.beginCopy(body.bytes);
}

void Printer::awaitDocument() {
  if (takesModel()) body_->json.valueFollows();
  ioflush();
}

int Printer::fullness() { return isAlive() ? body_->out.fullness() : 0; }

void Printer::ioflush() {
  if (isAlive()) body_->out.flush();
}

void Printer::close() {
  if (interruptRequested()) body_->out.interrupt();
  if (!body_->out.isOpen()) return;
  if (format_ == modelFormat) body_->json.assertComplete();
  body_->out.flush();
  body_->out.close();
}

} // namespace scrivo
