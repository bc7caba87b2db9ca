#include "command/grammar/Reader.h"

#include <algorithm>

namespace command::grammar {

/// A keyword of the command, or a word that stands for an argument without a keyword.
struct Reader::Candidate {
  std::string_view text;
  const Part* part;
  const Word* word = nullptr; ///< null for a keyword
};

namespace {

bool isLeading(const Part& part) { return part.required && part.keyword == Keyword::none; }

/// How an error calls a part.
std::string nameOf(const Part& part) {
  return std::string(part.keyword == Keyword::needed ? part.name : rowOf(part.kind).expected);
}

bool goesBeside(const Part& part, const Part& other) {
  return part.beside.empty() || part.beside == other.name;
}

} // namespace

Reader::Reader(const Grammar& grammar, std::vector<std::string> words)
    : parsed_(grammar, Line(std::move(words))), path_(grammar) {
  for (; at_ < parsed_.line_.size(); ++at_) take();
}

void Reader::take() {
  if (!path_.command()) {
    path_.take(parsed_.line_, at_);
    parsed_.command_ = path_.command();
    if (command()) parsed_.parts_.resize(command()->parts.size());
  } else if (path()) {
    parsed_.subject_.take(parsed_.line_, at_);
  } else if (const Part* const part = awaited()) {
    takeArgument(*part);
  } else {
    takePart();
  }
}

/// The words of a command that stand at this place: its own, or those that it is about.
const Path* Reader::path() const {
  if (!path_.command()) return &path_;
  const auto& parts = command()->parts;
  const bool isAbout = !parts.empty() && parts[0].kind == Kind::command;
  return isAbout ? &parsed_.subject_ : nullptr;
}

/// The part whose argument must come next; null if there is a choice.
const Part* Reader::awaited() const {
  if (open_) return open_;
  for (const Part& part : command()->parts) {
    if (isLeading(part) && !isGiven(part)) return &part;
  }
  return nullptr;
}

void Reader::takeArgument(const Part& part) {
  if (rowOf(part.kind).takesRest) return takeRest(part);
  auto reading = read(part.kind, parsed_.line_[at_]);
  if (!reading.value) fail(reading.wrong);
  parsed_.parts_[parsed_.indexOf(part.name)] = {at_, std::move(*reading.value)};
  open_ = nullptr;
}

/// Leaves the part open for the words that follow.
void Reader::takeRest(const Part& part) {
  const auto& word = parsed_.line_[at_];
  auto& given = *parsed_.parts_[parsed_.indexOf(part.name)];
  if (isOpen()) {
    given = {at_, word};
  } else {
    std::get<std::string>(given.value) += " " + word;
  }
}

void Reader::takePart() {
  if (const Part* const part = meantBy(parsed_.line_[at_])) {
    enter(*part);
    return takeArgument(*part);
  }
  const auto all = candidates();
  if (const Candidate* const candidate = chosen(all)) return takeKeyword(*candidate);
  const Part* const part = anyWord();
  if (!part || isGiven(*part)) parsed_.line_.failExpecting(at_, choices());
  enter(*part);
  takeArgument(*part);
}

/// The part without a keyword that a word is meant as by its looks.
const Part* Reader::meantBy(const std::string& word) const {
  for (const Part& part : command()->parts) {
    const auto looksLike = rowOf(part.kind).looksLike;
    if (part.keyword == Keyword::none && looksLike && looksLike(word)) return &part;
  }
  return nullptr;
}

/// The part that takes any word that is no keyword.
const Part* Reader::anyWord() const {
  for (const Part& part : command()->parts) {
    const auto& row = rowOf(part.kind);
    const bool takesAny = !row.looksLike && !row.closed && !isLeading(part);
    if (part.keyword != Keyword::needed && takesAny) return &part;
  }
  return nullptr;
}

std::vector<Reader::Candidate> Reader::candidates() const {
  std::vector<Candidate> all;
  for (const Part& part : command()->parts) {
    if (part.keyword != Keyword::none) {
      all.push_back({part.name, &part});
    } else if (rowOf(part.kind).closed) {
      for (const Word& word : rowOf(part.kind).words) all.push_back({word.text, &part, &word});
    }
  }
  return all;
}

/// The candidate that the word is or is short for; null for none. An abbreviation means the same
/// wherever it stands, so it is one among all the words of the command. Where any word may be a
/// name, none is short for a keyword.
const Reader::Candidate* Reader::chosen(const std::vector<Candidate>& candidates) const {
  std::vector<std::string_view> texts;
  for (const Candidate& candidate : candidates) texts.push_back(candidate.text);
  const auto exact = std::find(texts.begin(), texts.end(), parsed_.line_[at_]);
  if (exact != texts.end()) return &candidates[static_cast<std::size_t>(exact - texts.begin())];
  const int found = anyWord() ? -1 : parsed_.line_.findKeyword(at_, texts);
  return found < 0 ? nullptr : &candidates[static_cast<std::size_t>(found)];
}

void Reader::takeKeyword(const Candidate& candidate) {
  const Word* const word = candidate.word;
  const auto before = parsed_.text(candidate.part->name);
  const auto meaning = word ? word->meaning() : std::string();
  enter(*candidate.part, before.empty() ? meaning : before + " " + meaning);
  if (word && !word->refusal.empty()) fail(word->refusal);
  if (!word && candidate.part->kind != Kind::none) open_ = candidate.part;
}

/// Notes that a part stands here, unless it cannot beside the others.
void Reader::enter(const Part& part, Value value) {
  if (isGiven(part) && !part.repeats) fail(nameOf(part) + " stands twice");
  for (const Part& other : command()->parts) {
    if (!isGiven(other)) continue;
    if (!goesBeside(part, other)) fail(part.why);
    if (!goesBeside(other, part)) fail(other.why);
  }
  parsed_.parts_[parsed_.indexOf(part.name)] = {at_, std::move(value)};
}

bool Reader::isGiven(const Part& part) const { return parsed_.has(part.name); }

/// Whether a part may be added to those that are there.
bool Reader::isFree(const Part& part) const {
  if ((isGiven(part) && !part.repeats) || (!part.needs.empty() && !parsed_.has(part.needs)))
    return false;
  return std::all_of(command()->parts.begin(), command()->parts.end(), [&](const Part& other) {
    return !isGiven(other) || (goesBeside(part, other) && goesBeside(other, part));
  });
}

Choices Reader::choices() const {
  if (const Path* const words = path()) return words->choices();
  if (const Part* const part = awaited()) return Choices{Choice{"", part->kind, part->help}};
  Choices choices;
  for (const Part& part : command()->parts) {
    if (!isFree(part)) continue;
    if (part.keyword != Keyword::none) choices.push_back({part.name, Kind::none, part.help});
    if (part.keyword != Keyword::needed) choices.push_back({"", part.kind, part.help});
  }
  return choices;
}

/// A part that is there without the one that it needs.
const Part* Reader::lacking() const {
  for (const Part& part : command()->parts) {
    if (isGiven(part) && !part.needs.empty() && !parsed_.has(part.needs)) return &part;
  }
  return nullptr;
}

/// Whether a part lacks its argument, or the first word of one that is the words up to the end.
bool Reader::isOpen() const {
  if (!open_ || !rowOf(open_->kind).takesRest) return open_;
  return parsed_.text(open_->name).empty();
}

bool Reader::mayEnd() const {
  if (!command()) return false;
  const auto isMissing = [&](const Part& part) { return part.required && !isGiven(part); };
  const auto& parts = command()->parts;
  return !isOpen() && !lacking() && std::none_of(parts.begin(), parts.end(), isMissing);
}

const Parsed& Reader::whole() const {
  if (mayEnd()) return parsed_;
  if (command() && !isOpen()) {
    if (const Part* const part = lacking()) fail(part->why);
  }
  parsed_.line_.failExpecting(at_, choices());
}

void Reader::fail(std::string_view message) const { parsed_.line_.fail(at_, std::string(message)); }

} // namespace command::grammar
