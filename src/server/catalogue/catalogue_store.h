#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "server/catalogue/marc_record.h"
#include "server/store/database.h"

namespace vantry::server {

/// The MARC record of a title or of its holdings: the one that was imported, else one made from what the
/// library keeps of it. Nothing for an unknown id.
[[nodiscard]] std::optional<MarcRecord> recordOfTitle(Connection& db, std::int64_t id);
[[nodiscard]] std::optional<MarcRecord> recordOfHolding(Connection& db, std::int64_t id);

/// The stored form of the record that was imported; empty for none. `holdingId` 0: the title's.
[[nodiscard]] std::string storedText(Connection& db, std::int64_t titleId, std::int64_t holdingId);

/// Stores a record in place of the previous one. `holdingId` 0: it is the title's.
void storeRecord(Connection& db, std::int64_t titleId, std::int64_t holdingId, const MarcRecord& record);

/// What titles are found by.
enum class KeyKind { Title = 1, Author = 2, Subject = 3, CallNumber = 4, Word = 5, HoldingsWord = 6 };
using CatalogueKey = std::pair<KeyKind, std::string>;

/// The keys of a title's record, each once.
[[nodiscard]] std::vector<CatalogueKey> keysOf(const MarcRecord& record);

/// Replaces the title's keys, and its fingerprint, by those of its record and its holdings.
void indexTitle(Connection& db, std::int64_t id);

/// Creates the keys of titles that have none yet, such as those of an older database. True when there were
/// any.
bool indexSomeTitles(Connection& db);
void indexCatalogue(Database& database);

}  // namespace vantry::server
