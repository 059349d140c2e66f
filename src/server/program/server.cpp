#include "server/program/server.h"

#include <ctime>

#include <spdlog/spdlog.h>

#include "server/base/moment.h"
#include "server/catalogue/catalogue_store.h"
#include "server/desk/refusal_counts.h"
#include "server/http/http_front.h"
#include "server/jobs/housekeeping.h"
#include "server/requests/runner.h"
#include "server/store/database.h"
#include "server/store/library_clock.h"
#include "server/store/migrations.h"
#include "server/store/store_sentence.h"

namespace vantry {

using namespace server;

/// On a connection of its own, whose statements may take their time.
static void bringUpToDate(const Server::Options& options) {
  Database database(options.database, {.connections = 1, .patience = options.patience});
  upgrade(database);
  if (options.takesTimeZone) takeTimeZone(database);
  if (!options.clock) checkClock(database, std::time(nullptr));
  indexCatalogue(database);
}

static StoreOptions storeOptions(const Server::Options& options) {
  bringUpToDate(options);
  return {.connections = options.connections,
          .patience = options.patience,
          .silence = std::chrono::seconds(options.silence),
          .onMoved = options.onStoreLost};
}

static Database& heldToSchema(Database& database) {
  database.holdToSchema(schemaVersion(database));
  return database;
}

static Clock clockOf(const Server::Options& options) {
  return options.clock ? options.clock : Clock(wallClock);
}

class Server::Impl {
 public:
  explicit Impl(const Options& options)
      : database_(options.database, storeOptions(options)),
        runner_(heldToSchema(database_), clockOf(options),
                options.quickHashes ? HashCost::Quick : HashCost::Interactive, {.most = options.mostFound},
                &refusals_),
        clock_(clockOf(options)),
        housekeeper_(database_, refusals_, clock_, options.trustsClock),
        front_(runner_, {.address = options.address,
                         .port = options.port,
                         .certificate = options.certificate,
                         .key = options.key,
                         .threads = options.threads,
                         .limits = options.limits,
                         .trustedProxies = options.trustedProxies}) {}

  ~Impl() { stop(); }

  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  void start() {
    front_.start();
    housekeeper_.start();
  }

  void stop() {
    housekeeper_.stop();
    front_.stop();
    storeLastRefusals();
  }

  [[nodiscard]] int port() const { return front_.port(); }
  void reloadCertificate() { front_.reloadCertificate(); }

 private:
  /// They are not worth a failure of the stop.
  void storeLastRefusals() {
    try {
      refusals_.store(database_);
    } catch (const std::exception& error) {
      spdlog::warn("the last refusals were not counted: {}", error.what());
    }
  }

  Database database_;
  RefusalCounts refusals_;
  RequestRunner runner_;
  Clock clock_;
  Housekeeper housekeeper_;
  HttpFront front_;
};

Server::Server(const Options& options) {
  tellingPlainly(options.database, [&] { impl_ = std::make_unique<Impl>(options); });
}

Server::~Server() = default;

void Server::start() {
  impl_->start();
}

int Server::port() const {
  return impl_->port();
}

void Server::reloadCertificate() {
  impl_->reloadCertificate();
}

void Server::stop() {
  impl_->stop();
}

}  // namespace vantry
