#include "JsonWriter.h"

#include "JsonText.h"
#include "OutputBuffer.h"

namespace scrivo {

namespace {

/// Around the whole: the members of the caller's object, or one document.
constexpr LevelRule fragmentLevel{0, 0, Holds::members, "the fragment has no end of its own"};

const Attr32Info& word32(const AttrInfo& info) { return static_cast<const Attr32Info&>(info); }
const Attr64Info& word64(const AttrInfo& info) { return static_cast<const Attr64Info&>(info); }

void putText(OutputBuffer& out, const char* text) {
  text ? putJsonString(out, text) : out.put("null");
}

} // namespace

const LevelRule documentLevel{'{', '}', Holds::members, "end() closes what start() opened"};
const LevelRule dictLevel{'{', '}', Holds::members, "endDict() closes what startDict() opened"};
const LevelRule dictEntryLevel{'{', '}', Holds::members,
                               "endDictEntry() closes what startDictEntry() opened"};
const LevelRule simpleDictEntryLevel{
    0, 0, Holds::oneValue, "endSimpleDictEntry() closes what startSimpleDictEntry() opened"};
const LevelRule listLevel{'[', ']', Holds::elements, "endList() closes what startList() opened"};
const LevelRule listEntryLevel{'{', '}', Holds::members,
                               "endListEntry() closes what startListEntry() opened"};
const LevelRule submodelLevel{'{', '}', Holds::members,
                              "endSubmodel() closes what startSubmodel() opened"};

JsonWriter::JsonWriter(OutputBuffer& out) : out_(out), top_(levels_) {
  *top_ = {&fragmentLevel, false};
}

void JsonWriter::openDocument() {
  LUMO_ASSERT(top_ == levels_ && !top_->hasContent, "start() comes before all of the model");
  push(documentLevel);
}

void JsonWriter::openNamed(const LevelRule& rule, const char* name) {
  beginMember();
  putJsonString(out_, name);
  out_.put(':');
  push(rule);
}

void JsonWriter::openEntry(const LevelRule& rule, const Attr32Info& key) {
  LUMO_ASSERT(key.hasValue(), "hasValue");
  beginMember();
  if (&rule == &dictEntryLevel) out_.put('\n');
  putEntryName(key);
  out_.put(':');
  push(rule);
}

void JsonWriter::openElement(const LevelRule& rule) {
  LUMO_ASSERT(top_->rule->holds == Holds::elements, "a list entry stands in a list");
  separate();
  push(rule);
}

void JsonWriter::close(const LevelRule& rule) {
  LUMO_ASSERT(top_->rule == &rule, rule.misuse);
  if (rule.holds == Holds::oneValue && !top_->hasContent) out_.put("null");
  if (rule.close) out_.put(rule.close);
  --top_;
  if (&rule != &documentLevel) return;
  out_.put('\n');
  top_->hasContent = false; // another document may follow
}

void JsonWriter::add(const AttrInfo& info) {
  if (info.isKey()) return;
  switch (top_->rule->holds) {
  case Holds::members:
    if (info.keyLength() == 0) return; // an argument of the text alone
    separate();
    putKey(info);
    break;
  case Holds::elements:
    LUMO_ASSERT(info.keyLength() == 0, "an attribute in a list has an empty key");
    separate();
    break;
  case Holds::oneValue:
    LUMO_ASSERT(info.keyLength() == 0, "the value of a simple entry has an empty key");
    LUMO_ASSERT(!top_->hasContent, "a simple entry has one value");
    top_->hasContent = true;
  }
  putValue(info);
}

void JsonWriter::valueFollows() {
  LUMO_ASSERT(top_->rule->holds == Holds::oneValue && !top_->hasContent,
              "a document from elsewhere is the value of a simple entry");
  top_->hasContent = true;
}

void JsonWriter::assertComplete() const {
  LUMO_ASSERT(top_ == levels_, "every part of the model is ended before close()");
}

/// The comma between what stands in one level.
void JsonWriter::separate() {
  if (top_->hasContent) out_.put(',');
  top_->hasContent = true;
}

void JsonWriter::beginMember() {
  LUMO_ASSERT(top_->rule->holds == Holds::members,
              "a named part stands in the document, a dictionary or an entry");
  separate();
}

void JsonWriter::push(const LevelRule& rule) {
  LUMO_ASSERT(top_ - levels_ < depthLimit, "the model has at most 32 levels");
  *++top_ = {&rule, false};
  if (rule.open) out_.put(rule.open);
}

void JsonWriter::putKey(const AttrInfo& info) {
  constexpr std::size_t quotesAndColon = 3;
  const std::size_t length = info.keyLength();
  if (!info.isKeyPlain() || length + quotesAndColon > OutputBuffer::reserveLimit) {
    putJsonString(out_, info.key());
    return out_.put(':');
  }
  char* const at = out_.reserve(length + quotesAndColon);
  at[0] = '"';
  std::memcpy(at + 1, info.key(), length);
  at[length + 1] = '"';
  at[length + 2] = ':';
  out_.commit(at + length + quotesAndColon);
}

/// Names are strings in JSON, so that what writes no quotes of its own gets them here.
void JsonWriter::putEntryName(const Attr32Info& key) {
  if (key.kind() == Kind::string) return putJsonString(out_, key.text() ? key.text() : "(null)");
  out_.put('"');
  putValue(key);
  out_.put('"');
}

void JsonWriter::putValue(const AttrInfo& info) {
  switch (info.kind()) {
  case Kind::integer:
    return putJsonInteger(out_, static_cast<std::int64_t>(word32(info).bits()));
  case Kind::string:
    return putText(out_, word32(info).text());
  case Kind::boolean:
    return out_.put(word32(info).bits() ? "true" : "false");
  case Kind::uint:
    return putJsonUnsigned(out_, word32(info).bits());
  case Kind::uint64:
    return putJsonUnsigned(out_, word64(info).bits());
  case Kind::real:
    return putJsonDouble(out_, std::bit_cast<double>(word64(info).bits()));
  }
}

} // namespace scrivo
