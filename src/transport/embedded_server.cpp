#include "transport/embedded_server.h"

#include <system_error>

namespace vantry {

EmbeddedServer::EmbeddedServer(const Options& options) {
  std::error_code ignored;  // a folder that cannot be made shows when the database is opened
  std::filesystem::create_directories(options.database.parent_path(), ignored);
  // Also a file whose first start was broken off gets its library.
  createDemoDatabase(options.database.string(), options.demo);
  Server::Options server;
  server.database = options.database.string();
  server.threads = 0;  // its one client waits for each answer, so that to hand requests over only takes time
  server.trustsClock = true;  // nobody is there to answer when a library was left alone for days
  server.port = options.port;
  server.quickHashes = options.quickHashes;
  server.clock = options.clock;
  server_ = std::make_unique<Server>(server);
  server_->start();
}

EmbeddedServer::~EmbeddedServer() = default;

int EmbeddedServer::port() const {
  return server_->port();
}

std::string EmbeddedServer::address() const {
  return "http://127.0.0.1:" + std::to_string(port());
}

}  // namespace vantry
