#include <unistd.h>

#include <csignal>

#include <atomic>
#include <memory>

#include <spdlog/spdlog.h>
#include <systemd/sd-daemon.h>
#include <CLI/CLI.hpp>

#include "server/base/this_machine.h"
#include "server/base/user_error.h"
#include "server/jobs/housekeeping.h"
#include "server/program/command_line.h"
#include "server/program/log_output.h"
#include "server/program/server.h"
#include "server/store/store_sentence.h"

namespace vantry::server {

namespace {

struct ServeCommand {
  Server::Options options;
  std::string logLevel = "info";
  bool behindProxy = false;
  bool demoIsFine = false;
};

/// The signals that the program waits for, blocked in every thread from now on, so that they arrive there.
sigset_t blockSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int each : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, each);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

void reloadCertificate(Server& server) {
  try {
    server.reloadCertificate();
    spdlog::info("the certificate was read again");
  } catch (const std::runtime_error& error) {
    spdlog::error("the certificate stays the one before: {}", error.what());
  }
}

/// Waits for the signal that ends the program; a hang-up has the certificate read again.
void waitForEnd(const sigset_t& awaited, Server& server) {
  for (;;) {
    int signal = 0;
    sigwait(&awaited, &signal);
    if (signal != SIGHUP) return;
    reloadCertificate(server);
  }
}

void serve(const ServeCommand& command) {
  const Server::Options& options = command.options;
  const bool isPublic = !isThisMachine(options.address);
  if (options.certificate.empty() && isPublic && !command.behindProxy) {
    throw UserError(
        "Passwords would travel in the clear: give --certificate and --key, or say --behind-proxy when "
        "something in front of this server speaks TLS.");
  }
  const sigset_t awaited = blockSignals();
  std::atomic<bool> lost = false;
  Server::Options own = options;
  own.takesTimeZone = true;
  own.onStoreLost = [&] {
    lost = true;
    kill(getpid(), SIGTERM);
  };
  Server server(own);
  if (isPublic && !command.demoIsFine && hasDemoPasswords(options.database)) {
    throw UserError(
        "This is the demo library, and everybody knows its passwords. Say --demo-is-fine to serve it beyond "
        "this machine all the same.");
  }
  server.start();
  spdlog::info("serving on {} port {}{}", options.address, server.port(),
               options.certificate.empty() ? "" : " with TLS");
  sd_notify(0, "READY=1");
  waitForEnd(awaited, server);
  spdlog::info("stopping");
  sd_notify(0, "STOPPING=1");
  server.stop();
  if (lost) throw std::runtime_error(sentenceFor(StoreError::Kind::Moved, options.database));
}

}  // namespace

void describeServing(CLI::App& app, const Site& site) {
  const auto given = std::make_shared<ServeCommand>();
  CLI::App* serving = app.add_subcommand("serve", "Serve the database over HTTP");
  given->options.port = 8750;
  serving->add_option("--address", given->options.address, "Address to listen on")->capture_default_str();
  serving->add_option("--connections", given->options.connections, "Connections to the database, at most")
      ->check(CLI::Range(2, 1000))
      ->capture_default_str();
  serving->add_option("--port", given->options.port, "Port to listen on; 0 takes any")->capture_default_str();
  serving->add_option("--certificate", given->options.certificate, "PEM file of the certificate, for HTTPS");
  serving->add_option("--key", given->options.key, "PEM file of its key");
  serving->add_option("--threads", given->options.threads, "Requests that are worked on at one time")
      ->check(CLI::Range(1, 256))
      ->capture_default_str();
  serving->add_option("--most-connections", given->options.limits.connections, "Connections in all")
      ->capture_default_str();
  serving
      ->add_option("--most-per-address", given->options.limits.connectionsPerAddress,
                   "Connections of one client's address")
      ->capture_default_str();
  serving->add_option("--trusted-proxy", given->options.trustedProxies,
                      "Address or network of a proxy whose X-Forwarded-For is believed; may be repeated");
  serving->add_option("--most-found", given->options.mostFound, "Hits that a search tells; all are counted")
      ->check(CLI::Range(1, 32'767))
      ->capture_default_str();
  serving->add_flag("--behind-proxy", given->behindProxy, "Something in front of this server speaks TLS");
  serving->add_flag("--demo-is-fine", given->demoIsFine,
                    "Serve the demo library, whose passwords everybody knows, beyond this machine");
  serving->add_option("--log", given->logLevel, "debug tells every request, info those that failed")
      ->check(CLI::IsMember({"debug", "info", "warning", "error"}))
      ->capture_default_str();
  serving->callback([given, &site] {
    given->options.database = site.database;
    given->options.mail = site.mail;
    given->options.directory = site.directory;
    spdlog::set_default_logger(
        std::make_shared<spdlog::logger>("", std::make_shared<LogOutput>(STDOUT_FILENO)));
    spdlog::set_level(spdlog::level::from_str(given->logLevel));
    serve(*given);
  });
}

}  // namespace vantry::server
