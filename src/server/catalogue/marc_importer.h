#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "server/catalogue/catalogue_writer.h"
#include "server/catalogue/marc_import.h"
#include "server/catalogue/marc_reader.h"

namespace vantry::server {

struct NumberedReading {
  int number;  ///< place in the file, counted from 1
  MarcReading reading;
};

/// What later records of the file are judged by. May be filled twice from one record.
struct ImportedSoFar {
  std::unordered_set<std::string> passedOver;  ///< numbers of titles that the map does not want
  std::set<std::string> sources;               ///< whose numbers the titles have
  std::unordered_set<std::string> barcodes;
  std::unordered_set<std::int64_t> items;
  bool hasItems = false;
};

/// One portion of a file on its way into the catalogue. Made anew for each try of its transaction.
class MarcImporter {
 public:
  MarcImporter(CatalogueWriter& writer, const ImportOptions& options, ImportReport& report,
               ImportedSoFar& soFar);

  void take(const NumberedReading& numbered);

 private:
  /// Names of the library's own, as they are compared, with their keys.
  using Names = std::map<std::string, std::int64_t>;
  struct Place {
    CatalogueHolding row;
    std::int64_t holdingId = 0;
    std::int64_t mediaTypeId = 0;
    TitleFacts title;
    bool onlyPlace = false;  ///< its record of holdings tells of one place only
  };

  static std::int64_t keyNamed(const Names& names, std::string_view name);
  static std::int64_t chosen(const Names& names, const std::string& name, const char* what);
  Names namesIn(const char* sql);

  void tell(const std::string& fault);
  void refuse(const std::string& fault);
  void leaveOut(const std::string& fault);
  void tellRecord(const std::string& title, const ImportCounts& before);

  void takeTitle(const MarcRecord& record);
  void takeHoldings(const MarcRecord& record);
  void rememberItems(const std::vector<HoldingFacts>& holdings);
  bool takePlace(const HoldingFacts& holding, Place place);
  [[nodiscard]] std::int64_t locationOf(const HoldingFacts& holding) const;
  [[nodiscard]] std::int64_t mediaTypeOf(const std::vector<std::string>& texts) const;
  [[nodiscard]] std::int64_t mediaTypeOf(const ItemFacts& item, const Place& place) const;
  bool putHolding(Place& place);
  bool takeItem(const ItemFacts& item, const Place& place);

  CatalogueWriter& writer_;
  const ImportOptions& options_;
  ImportReport& report_;
  ImportedSoFar& soFar_;
  Names locations_;
  Names mediaTypes_;
  std::int64_t otherLocation_;
  std::int64_t otherType_;
  std::string record_;  ///< which record is taken, as it is told
};

/// "Record 3, 001 b7".
[[nodiscard]] std::string recordName(int number, const MarcRecord& record);

/// Adds a fault to the report, as long as there are few.
void tellFault(ImportReport& report, const std::string& fault);

}  // namespace vantry::server
