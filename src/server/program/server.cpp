#include "server/program/server.h"

#include <ctime>

#include <spdlog/spdlog.h>

#include "server/base/moment.h"
#include "server/catalogue/catalogue_store.h"
#include "server/desk/refusal_counts.h"
#include "server/directory/directory.h"
#include "server/http/http_front.h"
#include "server/jobs/housekeeping.h"
#include "server/mail/mail_carrier.h"
#include "server/mail/postman.h"
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

static std::unique_ptr<Postman> postmanFor(Database& database, const Server::Options& options) {
  return options.mail.kinds.any() ? std::make_unique<Postman>(database, clockOf(options), options.mail)
                                  : nullptr;
}

static std::unique_ptr<Directory> directoryFor(const Server::Options& options) {
  return options.directory.address.empty() ? nullptr : std::make_unique<Directory>(options.directory);
}

class Server::Impl {
 public:
  explicit Impl(const Options& options)
      : directory_(directoryFor(options)),
        database_(options.database, storeOptions(options)),
        runner_(heldToSchema(database_), clockOf(options),
                options.quickHashes ? HashCost::Quick : HashCost::Interactive, {.most = options.mostFound},
                {.refusals = &refusals_, .mail = options.mail.kinds, .directory = directory_.get()}),
        clock_(clockOf(options)),
        housekeeper_(database_, refusals_, clock_, options.trustsClock, options.mail.kinds),
        postman_(postmanFor(database_, options)),
        front_(runner_, {.address = options.address,
                         .port = options.port,
                         .certificate = options.certificate,
                         .key = options.key,
                         .threads = options.threads,
                         .limits = options.limits,
                         .trustedProxies = options.trustedProxies,
                         .mail = [this] { return mailFigures(); }}) {}

  ~Impl() { stop(); }

  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  void start() {
    front_.start();
    housekeeper_.start();
    if (postman_) postman_->start();
  }

  void stop() {
    if (postman_) postman_->stop();
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

  [[nodiscard]] MailFigures mailFigures() const {
    if (!postman_) return {};
    const Postman::Figures figures = postman_->figures();
    return {.queued = figures.queued, .sent = figures.sent, .failed = figures.failed};
  }

  std::unique_ptr<Directory> directory_;
  Database database_;
  RefusalCounts refusals_;
  RequestRunner runner_;
  Clock clock_;
  Housekeeper housekeeper_;
  std::unique_ptr<Postman> postman_;
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
