#include "server/http/http_front.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <stdexcept>
#include <thread>

#include <spdlog/spdlog.h>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/steady_timer.hpp>

#include "server/http/certificate.h"
#include "server/http/handshakes.h"
#include "server/http/http_connection.h"

namespace vantry::server {

namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;
using Tls = asio::ssl::context;

constexpr int backlog = 4096;
// Whoever checks a password takes 64 MiB for a moment; more at one time would only slow each other.
constexpr int logonThreads = 2;
constexpr int directoryThreads = 8;  // they mostly wait; a wrong password costs a check here as well
// Half of the processors, and never more than this: a crowd of them leaves room for requests.
constexpr int mostHandshakeThreads = 4;
constexpr std::chrono::milliseconds betweenLooks{250};
constexpr std::chrono::seconds lastReplies{2};

std::shared_ptr<Tls> readCertificate(const HttpOptions& options) {
  if (options.certificate.empty() && options.key.empty()) return nullptr;
  checkCertificate({.certificate = options.certificate, .key = options.key});
  auto tls = std::make_shared<Tls>(Tls::tls_server);
  tls->set_options(Tls::default_workarounds | Tls::no_sslv2 | Tls::no_sslv3 | Tls::no_tlsv1 |
                   Tls::no_tlsv1_1);
  SSL_CTX_set_mode(tls->native_handle(), SSL_MODE_RELEASE_BUFFERS);
  error_code error;
  tls->use_certificate_chain_file(options.certificate, error);
  if (!error) tls->use_private_key_file(options.key, Tls::pem, error);
  if (error) throw std::runtime_error("The certificate cannot be used: " + error.message());
  return tls;
}

int handshakeThreads() {
  const auto processors = static_cast<int>(std::thread::hardware_concurrency());
  return std::clamp(processors / 2, 1, mostHandshakeThreads);
}

}  // namespace

class HttpFront::Impl {
 public:
  Impl(RequestRunner& runner, const HttpOptions& options)
      : options_(options),
        clients_(options.trustedProxies),
        metrics_([this] { return load(); }),
        routes_(runner, metrics_),
        tls_(readCertificate(options)),
        requests_(options.threads, options.limits.waiting),
        writes_(options.threads, options.limits.waiting),
        logons_(logonThreads, options.limits.waiting),
        directory_(runner.asksDirectory() ? directoryThreads : 0, options.limits.waiting),
        handshakes_(tls_ ? handshakeThreads() : 0),
        acceptor_(loop_),
        look_(loop_) {}

  ~Impl() { stop(); }

  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  void start() {
    try {
      listen();
    } catch (const boost::system::system_error& error) {
      throw std::runtime_error("cannot listen on " + options_.address + " port " +
                               std::to_string(options_.port) + ": " + error.code().message());
    }
    accept();
    lookForLateOnes();
    thread_ = std::thread([this] { serve(); });
  }

  void stop() {
    if (!thread_.joinable()) return;
    asio::post(loop_, [this] {
      parts_.stopping = true;
      acceptor_.close();
      for (const auto& each : open_.all()) each->endIfIdle();
    });
    requests_.stop();
    writes_.stop();
    logons_.stop();
    directory_.stop();
    open_.awaitNone(lastReplies);
    loop_.stop();
    thread_.join();
    handshakes_.stop();
  }

  void reloadCertificate() {
    std::shared_ptr<Tls> fresh = readCertificate(options_);
    asio::post(loop_, [this, fresh = std::move(fresh)]() mutable { tls_ = std::move(fresh); });
  }

  [[nodiscard]] int port() const { return port_; }

 private:
  Metrics::Load load() const {
    return {.connections = open_.count(),
            .waitingRequests = requests_.waiting(),
            .waitingWrites = writes_.waiting(),
            .waitingLogons = logons_.waiting(),
            .waitingForDirectory = directory_.waiting(),
            .mail = options_.mail ? options_.mail() : MailFigures()};
  }

  void listen() {
    tcp::resolver resolver(loop_);
    const auto found = resolver.resolve(options_.address, std::to_string(options_.port),
                                        tcp::resolver::passive | tcp::resolver::numeric_service);
    const tcp::endpoint here = *found.begin();
    acceptor_.open(here.protocol());
    acceptor_.set_option(tcp::acceptor::reuse_address(true));
    acceptor_.bind(here);
    acceptor_.listen(backlog);
    port_ = acceptor_.local_endpoint().port();
  }

  /// The front's thread. What fails for one client must not end it for all.
  void serve() {
    for (;;) {
      try {
        loop_.run();
        return;
      } catch (const std::exception& error) {
        spdlog::error("a connection failed: {}", error.what());
      }
    }
  }

  void accept() {
    acceptor_.async_accept([this](const error_code& error, tcp::socket socket) {
      if (error == asio::error::operation_aborted) return;
      // Without a free file handle the next look tries again, when some client may have left.
      accepting_ = !error;
      if (accepting_) accept();
      if (!error) take(std::move(socket));
    });
  }

  void take(tcp::socket socket) {
    error_code error;
    const asio::ip::address peer = socket.remote_endpoint(error).address();
    if (error) return;
    socket.set_option(tcp::no_delay(true), error);  // without it a reply in two parts waits some 40 ms
    const auto connection = makeConnection(parts_, std::move(socket), peer, tls_.get());
    if (open_.add(connection, Clients::countedBy(peer), mostFor(peer))) {
      connection->start();
    } else {
      spdlog::debug("{} has too many connections", peer.to_string());
    }
  }

  [[nodiscard]] OpenConnections::Most mostFor(const asio::ip::address& peer) const {
    const HttpLimits& limits = options_.limits;
    if (clients_.isTrusted(peer)) return {limits.connections, limits.connections, limits.connections};
    return {limits.connections, limits.connectionsPerAddress, limits.handshakesPerAddress};
  }

  void lookForLateOnes() {
    look_.expires_after(betweenLooks);
    look_.async_wait([this](const error_code& error) {
      if (error) return;
      lookForLateOnes();  // first, so that a failure below does not end the looking
      if (!accepting_ && acceptor_.is_open()) accept();
      const auto now = HttpConnection::Clock::now();
      for (const auto& each : open_.all()) each->endIfLate(now);
    });
  }

  HttpOptions options_;
  Clients clients_;
  Metrics metrics_;
  Routes routes_;
  std::shared_ptr<Tls> tls_;
  OpenConnections open_;
  Workers requests_;
  Workers writes_;
  Workers logons_;
  Workers directory_;
  Handshakes handshakes_;
  FrontParts parts_{options_.limits, clients_, routes_,    metrics_, requests_,
                    writes_,         logons_,  directory_, open_,    handshakes_};
  // What waits in the loop holds connections and steps of handshakes, so that it is destroyed first.
  asio::io_context loop_;
  tcp::acceptor acceptor_;
  asio::steady_timer look_;
  std::thread thread_;
  bool accepting_ = true;
  int port_ = 0;
};

HttpFront::HttpFront(RequestRunner& runner, const HttpOptions& options)
    : impl_(std::make_unique<Impl>(runner, options)) {}

HttpFront::~HttpFront() = default;

void HttpFront::start() {
  impl_->start();
}

int HttpFront::port() const {
  return impl_->port();
}

void HttpFront::reloadCertificate() {
  impl_->reloadCertificate();
}

void HttpFront::stop() {
  impl_->stop();
}

}  // namespace vantry::server
