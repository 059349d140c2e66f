#include "server/catalogue/marc_facts.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "server/base/catalogue_text.h"
#include "server/base/number_text.h"

namespace vantry::server {

namespace {

bool isFigure(char c) {
  return c >= '0' && c <= '9';
}

/// Cataloguers end parts with the mark that leads the next one.
std::string withoutEndMark(std::string text) {
  while (!text.empty() && std::string_view(" /:;,=").find(text.back()) != std::string_view::npos)
    text.pop_back();
  return text;
}

/// The first four figures in a row that are a year.
std::string yearIn(std::string_view text) {
  for (std::size_t at = 0; at + 4 <= text.size(); ++at) {
    const std::string_view four = text.substr(at, 4);
    if (std::ranges::all_of(four, isFigure) && (four[0] == '1' || four[0] == '2')) return std::string(four);
  }
  return {};
}

/// The first of these fields that has one of the subfields.
struct Source {
  std::string_view tag;
  std::string_view codes;
};
std::string firstOf(const MarcRecord& record, std::span<const Source> sources) {
  for (const Source& source : sources) {
    const MarcField* field = findField(record, source.tag);
    std::string text = field == nullptr ? std::string() : withoutEndMark(subfields(*field, source.codes));
    if (!text.empty()) return text;
  }
  return {};
}

constexpr std::array authorSources{Source{"100", "a"}, Source{"110", "ab"}, Source{"111", "a"},
                                   Source{"700", "a"}, Source{"710", "ab"}};
constexpr std::array dateSources{Source{"260", "c"}, Source{"264", "c"}};
constexpr std::array carrierSources{Source{"338", "a"}, Source{"245", "h"}, Source{"655", "a"},
                                    Source{"300", "a"}};
constexpr std::array extentSources{Source{"300", "abc"}};

std::string publishedIn(const MarcRecord& record) {
  const std::string year = yearIn(firstOf(record, dateSources));
  if (!year.empty()) return year;
  constexpr std::size_t datePlace = 7;
  const std::string coded = controlText(record, "008");
  return coded.size() < datePlace + 4 ? std::string() : yearIn(coded.substr(datePlace, 4));
}

std::string_view kindOfScheme(char scheme) {
  switch (scheme) {
    case '0':
      return "MLC#";
    case '1':
      return "MDEW";
    case '2':
      return "MNLM";
    case '3':
      return "MSUD";
    default:
      return "MOTH";
  }
}

struct NumberSource {
  std::string_view tag;
  std::string_view kind;
};
constexpr std::array numberSources{NumberSource{"050", "MLC#"}, NumberSource{"090", "MLC#"},
                                   NumberSource{"060", "MNLM"}, NumberSource{"082", "MDEW"},
                                   NumberSource{"086", "MSUD"}, NumberSource{"099", "MOTH"}};

/// The shelf's own number, else the one that the title was given.
void setCallNumber(HoldingFacts& holding, const MarcRecord& record, const MarcField& field,
                   const ItemPractice& practice) {
  holding.callNumber = subfields(field, practice.callNumber);
  const bool tellsScheme = field.tag == "852" && !field.indicators.empty();
  holding.callNumberKind = kindOfScheme(tellsScheme ? field.indicators[0] : ' ');
  for (const NumberSource& source : numberSources) {
    if (!holding.callNumber.empty()) return;
    const MarcField* other = findField(record, source.tag);
    if (other == nullptr) continue;
    holding.callNumber = subfields(*other, "ab");
    holding.callNumberKind = source.kind;
  }
}

int copyNumber(std::string_view text) {
  const std::int64_t number = numberOf(text);
  return number > 0 && number < 10'000 ? static_cast<int>(number) : 1;
}

/// The number by which fields of holdings point at each other: "1.2", or only the "1" of it.
std::string linkOf(const MarcField& field, bool whole) {
  const std::string link = subfield(field, '8');
  return whole ? link : link.substr(0, link.find('.'));
}

/// The issue that an item is, from the field 863 to 865 with the same link, else as the item tells it.
void setIssue(ItemFacts& item, const MarcRecord& record, const MarcField& field, std::string_view codes) {
  for (const MarcField& issue : record.fields) {
    const std::string link = linkOf(field, true);
    const bool points =
        issue.tag >= "863" && issue.tag <= "865" && !link.empty() && linkOf(issue, true) == link;
    if (!points) continue;
    item.enumeration = subfields(issue, "abcdef");
    item.chronology = subfields(issue, "ijkl");
  }
  if (item.enumeration.empty()) item.enumeration = firstSubfield(field, codes);
  item.year = yearIn(item.chronology);
}

/// The status that keeps the item from being used; who has it now is for the desk to know.
std::string lastingStatus(const MarcField& field, const ItemPractice& practice, const MarcMap& map) {
  for (const char code : practice.status) {
    std::string status = subfield(field, code);
    if (isWithdrawn(map, status)) return status;
  }
  return {};
}

HoldingFacts holdingOf(const MarcRecord& record, const MarcField& field, const ItemPractice& practice) {
  HoldingFacts holding;
  for (const char code : practice.location) {
    std::string place = subfield(field, code);
    if (!place.empty()) holding.locations.push_back(std::move(place));
  }
  setCallNumber(holding, record, field, practice);
  return holding;
}

/// An item belongs to the place that its link names, else to the place before it.
std::size_t placeOf(const std::vector<const MarcField*>& places, std::size_t before, const MarcField& item) {
  const std::string link = linkOf(item, false);
  for (std::size_t at = 0; at < places.size() && !link.empty(); ++at) {
    if (linkOf(*places[at], false) == link) return at;
  }
  return before == 0 ? 0 : before - 1;
}

/// The holdings of a record as one practice tells of them.
class HoldingsReader {
 public:
  HoldingsReader(const MarcRecord& record, const ItemPractice& practice, const MarcMap& map)
      : record_(record), practice_(practice), map_(map) {}

  std::vector<HoldingFacts> read() {
    if (practice_.holdings.empty()) {
      readItemsWithPlaces();
    } else {
      readPlaces();
      readItems();
      readOwnBarcodes();
    }
    return std::move(holdings_);
  }

 private:
  [[nodiscard]] bool isItem(const MarcField& field) const {
    return std::ranges::find(practice_.items, field.tag) != practice_.items.end();
  }

  [[nodiscard]] ItemFacts itemOf(const MarcField& field) const {
    ItemFacts item;
    item.barcode = firstSubfield(field, practice_.barcode);
    item.copy = copyNumber(firstSubfield(field, practice_.copy));
    item.mediaType = firstSubfield(field, practice_.mediaType);
    item.status = lastingStatus(field, practice_, map_);
    setIssue(item, record_, field, practice_.issue);
    return item;
  }

  void readItemsWithPlaces() {
    for (const MarcField& field : record_.fields) {
      if (!isItem(field)) continue;
      holdings_.push_back(holdingOf(record_, field, practice_));
      holdings_.back().items.push_back(itemOf(field));
    }
  }

  void readPlaces() {
    for (const MarcField& field : record_.fields) {
      if (field.tag != practice_.holdings) continue;
      places_.push_back(&field);
      holdings_.push_back(holdingOf(record_, field, practice_));
    }
  }

  void readItems() {
    std::size_t before = 0;
    for (const MarcField& field : record_.fields) {
      if (field.tag == practice_.holdings) ++before;
      if (places_.empty() || !isItem(field)) continue;
      holdings_[placeOf(places_, before, field)].items.push_back(itemOf(field));
    }
  }

  /// A field of holdings may be the only one that tells of its item. Its other subfields mean something else.
  void readOwnBarcodes() {
    for (std::size_t at = 0; at < places_.size(); ++at) {
      ItemFacts item;
      item.barcode = firstSubfield(*places_[at], practice_.holdingsBarcode);
      item.copy = copyNumber(firstSubfield(*places_[at], practice_.copy));
      if (holdings_[at].items.empty() && !item.barcode.empty())
        holdings_[at].items.push_back(std::move(item));
    }
  }

  const MarcRecord& record_;
  const ItemPractice& practice_;
  const MarcMap& map_;
  std::vector<const MarcField*> places_;
  std::vector<HoldingFacts> holdings_;
};

bool hasBarcode(const std::vector<HoldingFacts>& holdings) {
  return std::ranges::any_of(holdings, [](const HoldingFacts& each) {
    return std::ranges::any_of(each.items, [](const ItemFacts& item) { return !item.barcode.empty(); });
  });
}

}  // namespace

TitleFacts titleFacts(const MarcRecord& record) {
  TitleFacts facts;
  facts.controlNumber = controlText(record, "001");
  facts.controlSource = controlText(record, "003");
  if (const MarcField* field = findField(record, "245"))
    facts.title = withoutEndMark(subfields(*field, "abnp"));
  facts.author = firstOf(record, authorSources);
  if (const MarcField* field = findField(record, "250")) facts.edition = subfields(*field, "ab");
  facts.published = publishedIn(record);
  const std::vector<std::string> carriers = carrierTexts(record);
  if (!carriers.empty()) facts.itemType = carriers.front();
  facts.description = firstOf(record, extentSources);
  return facts;
}

std::vector<std::string> carrierTexts(const MarcRecord& record) {
  std::vector<std::string> texts;
  for (const Source& source : carrierSources) {
    const MarcField* field = findField(record, source.tag);
    std::string text = field == nullptr ? std::string() : withoutEndMark(subfields(*field, source.codes));
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

std::vector<HoldingFacts> holdingsIn(const MarcRecord& record, const MarcMap& map) {
  std::vector<HoldingFacts> first;
  for (const ItemPractice& practice : map.practices) {
    std::vector<HoldingFacts> holdings = HoldingsReader(record, practice, map).read();
    if (hasBarcode(holdings)) return holdings;
    if (first.empty()) first = std::move(holdings);
  }
  return first;
}

}  // namespace vantry::server
