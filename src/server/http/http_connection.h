#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>

#include "server/http/clients.h"
#include "server/http/handshakes.h"
#include "server/http/http_limits.h"
#include "server/http/open_connections.h"
#include "server/http/routes.h"
#include "server/http/workers.h"

namespace vantry::server {

/// What all connections of one front share.
struct FrontParts {
  const HttpLimits& limits;
  const Clients& clients;
  const Routes& routes;
  Metrics& metrics;
  Workers& requests;
  Workers& writes;
  Workers& logons;
  Workers& directory;
  OpenConnections& open;
  Handshakes& handshakes;
  std::atomic<bool> stopping = false;
};

/// One client's connection. Reads a request, has the reply made, writes it, and begins anew; a request that
/// comes before the reply to the one before is served in its turn.
///
/// All of it happens on the front's thread, but for the handshake of TLS, whose steps run on threads of their
/// own, and the making of a reply: meanwhile the connection belongs to the worker alone, who also begins to
/// write. Who waits for something keeps the connection alive; it closes when nobody does.
class HttpConnection : public std::enable_shared_from_this<HttpConnection> {
 public:
  using Clock = std::chrono::steady_clock;

  virtual ~HttpConnection();
  HttpConnection(const HttpConnection&) = delete;
  HttpConnection& operator=(const HttpConnection&) = delete;

  virtual void start() = 0;

  /// These two may be called from any thread.
  void endIfLate(Clock::time_point now);
  /// Ends the connection unless a reply is under way, which ends it.
  void endIfIdle();

 protected:
  HttpConnection(FrontParts& parts, boost::asio::ip::tcp::socket& socket, boost::asio::ip::address peer);

  virtual void startReading(boost::asio::mutable_buffer into) = 0;
  virtual void startWriting(const std::array<boost::asio::const_buffer, 2>& from) = 0;
  virtual boost::asio::any_io_executor executor() = 0;

  void beginFirstRequest();
  void received(const boost::system::error_code& error, std::size_t bytes);
  void written(const boost::system::error_code& error);

  const HttpLimits& limits() const { return parts_.limits; }
  Handshakes& handshakes() { return parts_.handshakes; }
  void expectWithin(std::chrono::milliseconds time);
  void noteHandshake(const boost::system::error_code& error) const;

 private:
  enum class Phase { Reading, Working, Writing };
  using Parser = boost::beast::http::request_parser<boost::beast::http::string_body>;

  void beginRequest();
  void expectWholeRequest();
  void read();
  void parse();
  [[nodiscard]] int judgeHead();
  void noteHead();
  void checkSender();
  void handOver();
  void makeReply();
  template <class Work>
  void handTo(Workers& workers, Work work);
  void refuse(WireReply reply);
  void write();
  void note();
  void drain(std::size_t bytes);
  void end();

  FrontParts& parts_;
  const int handle_;
  const boost::asio::ip::address peer_;
  boost::beast::flat_buffer buffer_;
  std::optional<Parser> parser_;
  const Routes::Route* route_ = nullptr;
  WireRequest request_;
  WireReply reply_;
  std::string head_;  ///< of the reply
  bool begun_ = false;
  bool headTaken_ = false;
  bool isLast_ = false;  ///< nothing is served after this request
  bool draining_ = false;
  std::size_t drained_ = 0;
  Clock::time_point begunAt_;
  std::atomic<Phase> phase_ = Phase::Reading;
  std::atomic<Clock::rep> deadline_;
};

/// A connection over the accepted socket; protected when a context is given.
[[nodiscard]] std::shared_ptr<HttpConnection> makeConnection(FrontParts& parts,
                                                             boost::asio::ip::tcp::socket socket,
                                                             const boost::asio::ip::address& peer,
                                                             boost::asio::ssl::context* tls);

}  // namespace vantry::server
