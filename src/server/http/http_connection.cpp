#include "server/http/http_connection.h"

#include <sys/socket.h>

#include <limits>
#include <utility>

#include <spdlog/spdlog.h>
#include <boost/asio/bind_executor.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/ssl/error.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/http/status.hpp>

namespace vantry::server {

namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using boost::system::error_code;

Workers& workersOf(FrontParts& parts, Lane lane) {
  if (lane == Lane::Logons) return parts.logons;
  return lane == Lane::Writes ? parts.writes : parts.requests;
}

constexpr std::size_t bytesAtOnce = 2 * 1024;
constexpr std::size_t bytesOfBodyAtOnce = 16 * 1024;
// What a client goes on sending after it was refused is dropped up to here: a connection that is closed
// over unread bytes takes the reply with it.
constexpr std::size_t mostDrained = 16 * largestBody;
constexpr auto never = std::numeric_limits<HttpConnection::Clock::rep>::max();

std::string_view plain(boost::beast::string_view text) {
  return {text.data(), text.size()};
}

/// The whole list, though each proxy may have added a line of its own.
std::string forwardedFor(const http::request<http::string_body>& head) {
  std::string list;
  const auto [first, last] = head.equal_range("X-Forwarded-For");
  for (auto line = first; line != last; ++line) {
    if (!list.empty()) list += ',';
    list += plain(line->value());
  }
  return list;
}

/// The return code of a reply to a request, or the status of any other.
std::string resultOf(const WireReply& reply) {
  constexpr std::string_view start = "{\"rc\":";
  const std::string_view body = reply.body;
  if (reply.status != 200 || !body.starts_with(start)) return std::to_string(reply.status);
  return std::string(body.substr(start.size(), body.find(',') - start.size()));
}

int statusOf(const error_code& error) {
  if (error == http::error::body_limit) return 413;
  if (error == http::error::header_limit) return 431;
  return 400;
}

}  // namespace

HttpConnection::HttpConnection(FrontParts& parts, tcp::socket& socket, asio::ip::address peer)
    : parts_(parts), handle_(socket.native_handle()), peer_(std::move(peer)), deadline_(never) {}

HttpConnection::~HttpConnection() {
  parts_.open.remove(this);
}

void HttpConnection::expectWithin(std::chrono::milliseconds time) {
  deadline_ = (Clock::now() + time).time_since_epoch().count();
}

void HttpConnection::endIfLate(Clock::time_point now) {
  if (now.time_since_epoch().count() > deadline_) end();
}

void HttpConnection::endIfIdle() {
  if (phase_ == Phase::Reading) end();
}

/// What waits for the socket hears of it, and lets go.
void HttpConnection::end() {
  ::shutdown(handle_, SHUT_RDWR);
}

/// Tells of a client that speaks no TLS that this server takes, or does not trust its certificate; not of one
/// that only looks whether the port is open.
void HttpConnection::noteHandshake(const error_code& error) const {
  if (error.category() == asio::error::get_ssl_category())
    spdlog::info("{} makes no TLS connection: {}", parts_.clients.addressOf(peer_, {}), error.message());
}

void HttpConnection::beginFirstRequest() {
  parts_.open.settled(this);
  beginRequest();
  if (!begun_) expectWithin(limits().head);
}

void HttpConnection::beginRequest() {
  phase_ = Phase::Reading;
  parser_.emplace();
  parser_->header_limit(largestHead);
  parser_->body_limit(largestBody);
  headTaken_ = false;
  begun_ = buffer_.size() > 0;
  begunAt_ = Clock::now();
  expectWithin(begun_ ? limits().head : limits().idle);
  if (begun_) return parse();
  if (buffer_.capacity() > 2 * bytesAtOnce) buffer_.shrink_to_fit();
  read();
}

/// Counted from its first byte, however long the look at its sender took.
void HttpConnection::expectWholeRequest() {
  deadline_ = (begunAt_ + limits().request).time_since_epoch().count();
}

void HttpConnection::read() {
  startReading(buffer_.prepare(headTaken_ ? bytesOfBodyAtOnce : bytesAtOnce));
}

void HttpConnection::received(const error_code& error, std::size_t bytes) {
  if (error) return;
  if (draining_) return drain(bytes);
  buffer_.commit(bytes);
  if (!begun_) {
    begun_ = true;
    begunAt_ = Clock::now();
    expectWithin(limits().head);
  }
  parse();
}

void HttpConnection::parse() {
  while (!parser_->is_done()) {
    if (buffer_.size() == 0) return read();
    error_code error;
    buffer_.consume(parser_->put(buffer_.data(), error));
    if (error == http::error::need_more) return read();
    if (error) {
      if (!headTaken_) request_.address = parts_.clients.addressOf(peer_, {});
      return refuse(errorReply(statusOf(error)));
    }
    if (headTaken_ || !parser_->is_header_done()) continue;
    headTaken_ = true;
    expectWholeRequest();
    noteHead();
    if (const int status = judgeHead(); status != 0) return refuse(errorReply(status));
    if (parser_->content_length().value_or(0) > largestBodyOfAnyone) return checkSender();
  }
  handOver();
}

void HttpConnection::noteHead() {
  const auto& head = parser_->get();
  const std::string_view target = plain(head.target());
  request_.method = plain(head.method_string());
  request_.path = target.substr(0, target.find('?'));
  request_.authorization = plain(head[http::field::authorization]);
  request_.requestId = plain(head["Request-Id"]);
  request_.knownVersions = plain(head[http::field::if_none_match]);
  request_.body = {};
  request_.address = parts_.clients.addressOf(peer_, forwardedFor(head));
  route_ = Routes::find(request_.method, request_.path);
  isLast_ = !head.keep_alive();
}

/// The status that refuses the request before its body is read; 0 for one that may be read.
int HttpConnection::judgeHead() {
  const auto& head = parser_->get();
  if (head.count(http::field::transfer_encoding) > 0) return 411;
  if (head.count(http::field::content_encoding) > 0) return 415;
  if (head.count(http::field::expect) > 0) return 417;
  const auto length = parser_->content_length();
  const bool post = head.method() == http::verb::post;
  if (!length) return post ? 411 : 0;
  if (!post && *length > 0) return 400;
  return *length > Routes::largestBodyOf(route_) ? 413 : 0;
}

/// Has the work done by a worker, to whom the connection belongs until it calls back or writes.
template <class Work>
void HttpConnection::handTo(Workers& workers, Work work) {
  phase_ = Phase::Working;
  deadline_ = never;
  if (workers.take(std::move(work))) return;
  parts_.metrics.noteTurnedAway();
  reply_ = busyReply();
  isLast_ = isLast_ || !parser_->is_done();
  write();
}

void HttpConnection::checkSender() {
  handTo(parts_.requests, [self = shared_from_this()] {
    std::optional<WireReply> refused = self->parts_.routes.refusalOfSender(self->request_);
    asio::post(self->executor(), [self, refused = std::move(refused)]() mutable {
      if (refused) return self->refuse(std::move(*refused));
      self->phase_ = Phase::Reading;
      self->expectWholeRequest();
      self->parse();
    });
  });
}

void HttpConnection::handOver() {
  request_.body = parser_->get().body();
  const Lane lane = Routes::laneOf(route_, request_);
  if (lane == Lane::Front) {
    reply_ = parts_.routes.answer(route_, request_);
    return write();
  }
  handTo(workersOf(parts_, lane), [self = shared_from_this()] { self->makeReply(); });
}

/// What a worker does. A request that needs the house's directory is begun anew by another one, so that
/// whoever has a password here does not wait behind it.
void HttpConnection::makeReply() {
  reply_ = parts_.routes.answer(route_, request_);
  if (!reply_.needsDirectory) return write();
  request_.mayAskDirectory = true;
  handTo(parts_.directory, [self = shared_from_this()] { self->makeReply(); });
}

/// Answers a request of which not all was read, so that no other can follow.
void HttpConnection::refuse(WireReply reply) {
  reply_ = std::move(reply);
  isLast_ = true;
  write();
}

/// Counts the reply, and tells of it in the log.
void HttpConnection::note() {
  const std::chrono::duration<double> time = Clock::now() - begunAt_;
  const std::string_view code = Routes::nameOf(route_, request_);
  const std::string result = resultOf(reply_);
  parts_.metrics.noteReply(code, result, time);
  const auto level = reply_.status < 400 ? spdlog::level::debug : spdlog::level::info;
  spdlog::log(level, "{} {}: {} in {:.1f} ms", request_.address, code, result, time.count() * 1000);
}

/// After this the connection belongs to the front's thread.
void HttpConnection::write() {
  note();
  isLast_ = isLast_ || parts_.stopping;
  const bool hasBody = reply_.status != 204 && reply_.status != 304;
  const auto reason = http::obsolete_reason(static_cast<http::status>(reply_.status));
  head_ = "HTTP/1.1 " + std::to_string(reply_.status) + ' ';
  head_.append(reason.data(), reason.size());
  if (hasBody) {
    head_ += "\r\nContent-Type: " + std::string(reply_.type) +
             "\r\nContent-Length: " + std::to_string(reply_.body.size());
  }
  if (reply_.retryAfter > 0) head_ += "\r\nRetry-After: " + std::to_string(reply_.retryAfter);
  head_ += reply_.headers;
  if (isLast_) head_ += "\r\nConnection: close";
  head_ += "\r\n\r\n";
  const bool tellsBody = hasBody && request_.method != "HEAD";
  phase_ = Phase::Writing;
  expectWithin(limits().reply);
  startWriting({asio::buffer(head_), tellsBody ? asio::buffer(reply_.body) : asio::const_buffer{}});
}

void HttpConnection::written(const error_code& error) {
  if (error || parts_.stopping) return end();
  reply_ = {};
  request_ = {};
  route_ = nullptr;
  if (!isLast_) return beginRequest();
  parser_.reset();
  draining_ = true;
  phase_ = Phase::Reading;
  expectWithin(limits().farewell);
  ::shutdown(handle_, SHUT_WR);
  drain(0);
}

/// Reads on and drops what comes, until the client closes or it is too much.
void HttpConnection::drain(std::size_t bytes) {
  drained_ += bytes;
  buffer_.clear();
  if (drained_ > mostDrained) return end();
  startReading(buffer_.prepare(bytesOfBodyAtOnce));
}

namespace {

template <class Stream>
class ConnectionOver final : public HttpConnection {
 public:
  template <class... Context>
  ConnectionOver(FrontParts& parts, tcp::socket socket, asio::ip::address peer, Context&... context)
      : HttpConnection(parts, socket, std::move(peer)), stream_(std::move(socket), context...) {}

  void start() override {
    if constexpr (std::is_same_v<Stream, tcp::socket>) {
      beginFirstRequest();
    } else {
      expectWithin(limits().head);
      stream_.async_handshake(
          asio::ssl::stream_base::server,
          asio::bind_executor(handshakes().executor(), [this, self = shared_from_this()](error_code error) {
            if (error) return noteHandshake(error);
            asio::post(executor(), [this, self] { beginFirstRequest(); });
          }));
    }
  }

 private:
  void startReading(asio::mutable_buffer into) override {
    stream_.async_read_some(into,
                            [this, self = shared_from_this()](const error_code& error, std::size_t bytes) {
                              received(error, bytes);
                            });
  }

  void startWriting(const std::array<asio::const_buffer, 2>& from) override {
    asio::async_write(stream_, from, [this, self = shared_from_this()](const error_code& error, std::size_t) {
      written(error);
    });
  }

  asio::any_io_executor executor() override { return stream_.get_executor(); }

  Stream stream_;
};

}  // namespace

std::shared_ptr<HttpConnection> makeConnection(FrontParts& parts, tcp::socket socket,
                                               const asio::ip::address& peer, asio::ssl::context* tls) {
  if (tls == nullptr) return std::make_shared<ConnectionOver<tcp::socket>>(parts, std::move(socket), peer);
  return std::make_shared<ConnectionOver<asio::ssl::stream<tcp::socket>>>(parts, std::move(socket), peer,
                                                                          *tls);
}

}  // namespace vantry::server
