#include "scrivo/Printer.h"

#include "JsonWriter.h"
#include "OutputBuffer.h"
#include "TextFormat.h"

namespace scrivo {

struct Printer::Body {
  explicit Body(int fd) : out(fd), json(out) {}

  OutputBuffer out;
  JsonWriter json;
};

Printer::Printer(int fd, unsigned int format, bool, bool, bool, unsigned int)
    : format_(format), body_(std::make_unique<Body>(fd)) {}

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
