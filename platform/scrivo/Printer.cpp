#include "scrivo/Printer.h"

#include "JsonWriter.h"
#include "OutputBuffer.h"
#include "TextFormat.h"

namespace scrivo {

struct Printer::Body {
  template <class Target>
  explicit Body(Target&& target) : out(target), json(out) {}

  OutputBuffer out;
  JsonWriter json;
  Stretch* recorded = nullptr; ///< the stretch that is being printed
  int depth = 0;               ///< the levels that were open when it began
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
    : printer_(printer), stretch_(printer.body_->recorded ? nullptr : &stretch) {
  if (!stretch_) return;
  Body& body = *printer_.body_;
  body.recorded = stretch_;
  body.depth = body.json.depth();
  stretch_->level_ = printer_.format_ == modelFormat ? body.json.level() : nullptr;
  stretch_->hadContent_ = body.json.hasContent();
  body.out.beginCopy(stretch_->bytes_);
}

void Printer::Recording::keep() {
  if (!stretch_ || !printer_.isAlive()) return;
  const Body& body = *printer_.body_;
  LUMO_ASSERT(body.json.depth() == body.depth, "a stretch ends in the level that it begins in");
  stretch_->hasContent_ = body.json.hasContent();
  stretch_->owner_ = &printer_;
}

Printer::Recording::~Recording() {
  if (!stretch_) return;
  printer_.body_->out.endCopy();
  printer_.body_->recorded = nullptr;
  if (!stretch_->isKept()) stretch_->forget();
}

void Printer::put(const Stretch& stretch) {
  if (!isAlive()) return;
  LUMO_ASSERT(stretch.owner_ == this, "a stretch is put by the printer that printed it");
  Body& body = *body_;
  if (format_ == modelFormat) {
    LUMO_ASSERT(body.json.level() == stretch.level_ &&
                    body.json.hasContent() == stretch.hadContent_,
                "a stretch is put where one like it was printed");
    body.json.hasContentIs(stretch.hasContent_);
  }
  std::size_t at = 0;
  for (const Stretch::Indent& step : stretch.indents_) {
    body.out.put(stretch.bytes_.data() + at, step.at - at);
    indent(step.columns);
    at = step.at;
  }
  body.out.put(stretch.bytes_.data() + at, stretch.bytes_.size() - at);
}

/// A stretch keeps where its margins are and not the blanks.
void Printer::indent(std::uint32_t columns) {
  if (!takesText()) return;
  OutputBuffer& out = body_->out;
  Stretch* const recorded = body_->recorded;
  if (recorded) {
    out.endCopy();
    recorded->indents_.push_back({static_cast<std::uint32_t>(recorded->bytes_.size()), columns});
  }
  out.fill(' ', std::size_t{margin_} + columns);
  if (recorded) out.beginCopy(recorded->bytes_);
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
