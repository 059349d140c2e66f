#include "server/program/server.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <spdlog/spdlog.h>

#include "server/base/moment.h"
#include "server/catalogue/catalogue_store.h"
#include "server/http/http_front.h"
#include "server/requests/runner.h"
#include "server/store/database.h"
#include "server/store/migrations.h"
#include "server/store/store_sentence.h"

namespace vantry {

using namespace server;

namespace {

constexpr std::chrono::seconds housekeepingPeriod{60};

Database& upToDate(Database& database) {
  migrate(database);
  indexCatalogue(database);
  return database;
}

}  // namespace

class Server::Impl {
 public:
  explicit Impl(const Options& options)
      : database_(options.database, {.connections = 8, .patience = options.patience}),
        runner_(upToDate(database_), options.clock ? options.clock : Clock(wallClock),
                options.quickHashes ? HashCost::Quick : HashCost::Interactive),
        front_(runner_, {.address = options.address,
                         .port = options.port,
                         .certificate = options.certificate,
                         .key = options.key,
                         .threads = options.threads}) {}

  ~Impl() { stop(); }

  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  void start() {
    front_.start();
    keeper_ = std::thread([this] { keepHouse(); });
  }

  void stop() {
    {
      const std::lock_guard lock(mutex_);
      stopping_ = true;
    }
    wake_.notify_all();
    if (keeper_.joinable()) keeper_.join();
    front_.stop();
  }

  [[nodiscard]] int port() const { return front_.port(); }

 private:
  void keepHouse() {
    std::unique_lock lock(mutex_);
    while (!stopping_) {
      lock.unlock();
      keepHouseOnce();
      lock.lock();
      wake_.wait_for(lock, housekeepingPeriod, [&] { return stopping_; });
    }
  }

  void keepHouseOnce() {
    try {
      runner_.keepHouse();
    } catch (const StoreError& error) {
      spdlog::warn("housekeeping is put off: {}", error.what());
    }
  }

  Database database_;
  RequestRunner runner_;
  HttpFront front_;
  std::thread keeper_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool stopping_ = false;
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

void Server::stop() {
  impl_->stop();
}

}  // namespace vantry
