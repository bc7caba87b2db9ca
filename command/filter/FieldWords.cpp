#include "command/filter/FieldWords.h"

#include "command/grammar/Kind.h"
#include "rova/route/RouteTypeStrings.h"
#include "state/RouteTypeNames.h"
#include "state/TunnelId.h"

#include <algorithm>

namespace command::filter {

namespace {

using Words = std::vector<FieldWord>;

/// Adds a word that stands for itself, once.
void addOnce(std::string_view word, Words& words) {
  const auto isWord = [&](const FieldWord& known) { return known.word == word; };
  if (word.empty() || std::any_of(words.begin(), words.end(), isWord)) return;
  words.push_back({std::string(word), std::string(word)});
}

template <class Names>
void addTypes(const Names& names, Words& words) {
  for (const auto& name : names) addOnce(Rova::pcodeAsWord(name.value), words);
}

/// The kinds of tunnels and of encapsulations are four bits each.
constexpr unsigned mostKinds = 16;

Words makeTunnelWords() {
  using namespace Tunnel::TunnelTable;
  constexpr unsigned kindOfEncap = 28; // the bit where it begins
  Words words;
  for (unsigned kind = 0; kind < mostKinds; ++kind) {
    addOnce(TunnelId(TunnelId::convertToTunnelValue(kind, 0)).typeCliStr(), words);
  }
  for (unsigned kind = 0; kind < mostKinds; ++kind) {
    addOnce(EncapId(kind << kindOfEncap).typeCliStr(false), words);
  }
  return words;
}

} // namespace

const Words& typeWords() {
  static const Words words = [] {
    Words all;
    addTypes(state::routeTypeNames, all);
    addTypes(state::route6TypeNames, all);
    return all;
  }();
  return words;
}

const Words& protocolWords() {
  static const Words words = [] {
    Words all;
    for (const auto& word : grammar::rowOf(grammar::Kind::protocol).words) {
      all.push_back({std::string(word.text), word.meaning()});
    }
    return all;
  }();
  return words;
}

const Words& tunnelWords() {
  static const Words words = makeTunnelWords();
  return words;
}

} // namespace command::filter
