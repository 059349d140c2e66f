#include "server/program/on_library.h"

#include "server/store/library_clock.h"
#include "server/store/migrations.h"
#include "server/store/store_sentence.h"

namespace vantry::server {

void onLibrary(const std::string& url, const std::function<void(Database&)>& work) {
  tellingPlainly(url, [&] {
    Database database(url, {.connections = 1});
    requireSchema(database);
    takeTimeZone(database);
    work(database);
  });
}

void changeLibrary(const std::string& url, const Database::Work& work) {
  onLibrary(url, [&](Database& database) { database.write(work); });
}

}  // namespace vantry::server
