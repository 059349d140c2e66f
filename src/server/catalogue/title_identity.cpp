#include "server/catalogue/title_identity.h"

#include <algorithm>
#include <set>

#include "server/base/catalogue_text.h"

namespace vantry::server {

namespace {

constexpr std::size_t tellingLength = 4;

/// The beginnings of the words that tell something, so that endings do not count; of a text of short words
/// all of them.
std::set<std::string> stemsOf(std::string_view text) {
  std::set<std::string> stems;
  std::set<std::string> shortWords;
  for (const std::string& word : catalogueWords(catalogueKey(text))) {
    if (word.size() >= tellingLength) {
      stems.emplace(word.substr(0, tellingLength));
    } else {
      shortWords.insert(word);
    }
  }
  return stems.empty() ? shortWords : stems;
}

bool haveCommonStem(std::string_view a, std::string_view b) {
  const std::set<std::string> one = stemsOf(a);
  const std::set<std::string> other = stemsOf(b);
  return std::ranges::any_of(one, [&](const std::string& stem) { return other.contains(stem); });
}

}  // namespace

std::string fingerprintOf(const TitleFacts& facts) {
  if (!facts.controlNumber.empty()) return {};
  std::string print;
  for (const std::string* part :
       {&facts.title, &facts.author, &facts.edition, &facts.published, &facts.itemType})
    print += catalogueKey(*part) + "|";
  return print;
}

CatalogueTitle rowOf(const TitleFacts& facts) {
  return {facts.title, facts.author, facts.published, facts.controlNumber, facts.controlSource};
}

bool isQuiteAnother(const CatalogueTitle& a, const CatalogueTitle& b) {
  return a.title != b.title && !haveCommonStem(a.title, b.title) && !haveCommonStem(a.author, b.author);
}

}  // namespace vantry::server
