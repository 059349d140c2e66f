#include "server/http/http_front.h"

#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <atomic>
#include <charconv>
#include <exception>
#include <stdexcept>
#include <thread>

#include <httplib.h>
#include <spdlog/spdlog.h>

#include "server/http/wire.h"
#include "server/requests/reply.h"
#include "words/json_text.h"

namespace vantry::server {

namespace {

constexpr const char* jsonType = "application/json";
constexpr std::size_t largestBody = 1024 * 1024;
// What is larger than allowed, but less than this, is read and dropped, so that the client gets to the
// answer.
constexpr std::size_t farTooLarge = 16 * largestBody;
constexpr time_t keepAliveSeconds = 120;
constexpr time_t readSeconds = 15;

void answer(httplib::Response& response, int status, const std::string& json) {
  response.status = status;
  response.set_content(json, jsonType);
}

void refuse(httplib::Response& response, int status, std::string_view sentence) {
  answer(response, status, jsonObject({{"error", sentence}}));
}

void refuseForNow(httplib::Response& response, Moment seconds) {
  response.set_header("Retry-After", std::to_string(seconds));
  refuse(response, 429, "Too many tries. Wait before the next one.");
}

void refuseSession(httplib::Response& response) {
  refuse(response, 401, "The session is unknown or has expired.");
}

std::string_view bearerToken(const httplib::Request& request, std::string& header) {
  constexpr std::string_view scheme = "Bearer ";
  header = request.get_header_value("Authorization");
  const std::string_view text = header;
  return text.starts_with(scheme) ? text.substr(scheme.size()) : std::string_view{};
}

/// The sentence for an error that the library itself found before any of our code ran.
std::string_view sentenceFor(int status) {
  switch (status) {
    case 404:
      return "There is nothing at this path.";
    case 411:
      return "A body needs a Content-Length and travels in one piece.";
    case 413:
      return "The body is larger than 1 MiB.";
    case 414:
      return "The path is too long.";
    case 415:
      return "A body travels as it is, without a Content-Encoding.";
    case 500:
      return "The server failed.";
    default:
      return "The request could not be read.";
  }
}

std::string_view sentenceFor(StoreError::Kind kind) {
  return kind == StoreError::Kind::ReadOnly ? "The database cannot be written."
                                            : "The database cannot be used now.";
}

/// The status that refuses a body before a byte of it is read; 0 for one that may be read. The library's
/// limit holds for a plain body of a told length only: pieces and packed bodies would grow past it.
int refusalOfBody(const httplib::Request& request) {
  if (request.has_header("Transfer-Encoding")) return 411;
  if (request.has_header("Content-Encoding")) return 415;
  const bool post = request.method == "POST";
  const std::size_t lengths = request.get_header_value_count("Content-Length");
  if (lengths == 0) return post ? 411 : 0;
  const std::string length = request.get_header_value("Content-Length");
  std::size_t bytes = 0;
  const char* end = length.data() + length.size();
  const auto [rest, error] = std::from_chars(length.data(), end, bytes);
  if (lengths > 1 || rest != end || error != std::errc{}) return 400;
  if (!post && bytes > 0) return 400;
  return bytes > farTooLarge ? 413 : 0;
}

/// Refuses and ends the connection: what is left of the body must not be taken for the next request.
void refuseAndClose(httplib::Response& response, int status) {
  response.status = status;
  response.set_header("Connection", "close");
  const std::string body = jsonObject({{"error", sentenceFor(status)}});
  response.set_content_provider(
      body.size(), jsonType, [body](std::size_t from, std::size_t length, httplib::DataSink& sink) {
        sink.write(body.data() + from, length);
        return false;  // deliberate: all is written, and a failed body ends the line
      });
}

/// Shuts every connection that this process accepted on the port. The library waits for kept connections to
/// run into their time limit before it stops, and lets nobody at its sockets; those of ours are told by their
/// local port.
void shutConnections(int port) {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  const int last = static_cast<int>(std::min<rlim_t>(limit.rlim_cur, 65536));
  for (int each = 3; each < last; ++each) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    if (getsockname(each, reinterpret_cast<sockaddr*>(&address), &size) != 0) continue;
    int local = 0;
    if (address.ss_family == AF_INET) local = ntohs(reinterpret_cast<const sockaddr_in&>(address).sin_port);
    if (address.ss_family == AF_INET6)
      local = ntohs(reinterpret_cast<const sockaddr_in6&>(address).sin6_port);
    if (local == port) shutdown(each, SHUT_RDWR);
  }
}

/// The library's pool, which also ends the connections when it is told to end.
class Workers : public httplib::ThreadPool {
 public:
  Workers(std::size_t threads, const int& port) : ThreadPool(threads), port_(port) {}
  void shutdown() override {
    shutConnections(port_);
    ThreadPool::shutdown();
  }

 private:
  const int& port_;
};

}  // namespace

class HttpFront::Impl {
 public:
  Impl(RequestRunner& runner, const HttpOptions& options) : runner_(runner), options_(options) {
    if (options.certificate.empty() != options.key.empty()) {
      throw std::runtime_error("a certificate and its key are needed together");
    }
    if (options.certificate.empty()) {
      server_ = std::make_unique<httplib::Server>();
    } else {
      server_ = std::make_unique<httplib::SSLServer>(options.certificate.c_str(), options.key.c_str());
    }
    if (!server_->is_valid()) throw std::runtime_error("the certificate or its key cannot be read");
    configure();
    route();
  }

  ~Impl() { stop(); }

  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  void start() {
    if (options_.port == 0) {
      port_ = server_->bind_to_any_port(options_.address);
    } else if (server_->bind_to_port(options_.address, options_.port)) {
      port_ = options_.port;
    }
    if (port_ <= 0) {
      throw std::runtime_error("cannot listen on " + options_.address + " port " +
                               std::to_string(options_.port));
    }
    listener_ = std::thread([this] { listen(); });
    while (!server_->is_running() && !ended_) std::this_thread::yield();
    if (!ended_) return;
    listener_.join();
    throw std::runtime_error("cannot serve on " + options_.address + " port " + std::to_string(port_));
  }

  void stop() {
    if (!listener_.joinable()) return;
    server_->stop();
    listener_.join();
  }

  [[nodiscard]] int port() const { return port_; }

 private:
  /// Returns when the server is told to stop, and also when it cannot begin.
  void listen() {
    try {
      server_->listen_after_bind();
    } catch (const std::exception& error) {
      spdlog::error("listening failed: {}", error.what());
    }
    ended_ = true;
  }

  void configure() {
    // The library would share the port with any other program that asks; two servers must not take turns.
    server_->set_socket_options([](socket_t socket) {
      const int yes = 1;
      setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    server_->set_tcp_nodelay(true);  // before binding: without it each round trip waits some 40 ms
    server_->set_keep_alive_max_count(1'000'000'000);
    server_->set_keep_alive_timeout(keepAliveSeconds);
    server_->set_read_timeout(readSeconds);
    server_->set_write_timeout(readSeconds);
    server_->set_payload_max_length(largestBody);
    // An idle kept connection holds a thread, so there must be as many as clients.
    const auto threads = static_cast<std::size_t>(std::max(options_.threads, 1));
    server_->new_task_queue = [this, threads] { return new Workers(threads, port_); };
    server_->set_pre_routing_handler([](const httplib::Request& request, httplib::Response& response) {
      const int status = refusalOfBody(request);
      if (status == 0) return httplib::Server::HandlerResponse::Unhandled;
      refuseAndClose(response, status);
      return httplib::Server::HandlerResponse::Handled;
    });
    server_->set_error_handler([](const httplib::Request&, httplib::Response& response) {
      const bool told = !response.body.empty() || response.content_length_ > 0;
      if (!told) refuse(response, response.status, sentenceFor(response.status));
    });
    server_->set_exception_handler(
        [](const httplib::Request& request, httplib::Response& response, const std::exception_ptr& failure) {
          fail(request, response, failure);
        });
  }

  void route() {
    server_->Get("/v1/health", [this](const httplib::Request&, httplib::Response& response) {
      answer(response, 200, R"({"name":"vantry","protocol":1,"key":")" + runner_.sealingKey() + "\"}");
    });
    server_->Post("/v1/login", [this](const auto& request, auto& response) { login(request, response); });
    server_->Post("/v1/logout", [this](const auto& request, auto& response) { logout(request, response); });
    server_->Post("/v1/password",
                  [this](const auto& request, auto& response) { password(request, response); });
    server_->Post("/v1/request/([A-Z0-9]{1,16})",
                  [this](const auto& request, auto& response) { run(request, response); });
  }

  static void fail(const httplib::Request& request, httplib::Response& response,
                   const std::exception_ptr& failure) {
    try {
      std::rethrow_exception(failure);
    } catch (const StoreError& error) {
      spdlog::error("{}: {}", request.path, error.what());
      failStore(request, response, error.kind());
    } catch (const std::exception& error) {
      spdlog::error("{}: {}", request.path, error.what());
      refuse(response, 500, sentenceFor(500));
    } catch (...) {
      spdlog::error("{}: unknown failure", request.path);
      refuse(response, 500, sentenceFor(500));
    }
  }

  static void failStore(const httplib::Request& request, httplib::Response& response, StoreError::Kind kind) {
    using Kind = StoreError::Kind;
    const bool mayPass = kind == Kind::Busy || kind == Kind::Unreachable || kind == Kind::Absent ||
                         kind == Kind::Contested || kind == Kind::Moved || kind == Kind::Newer;
    const bool isRequest = request.path.starts_with("/v1/request/");
    if (isRequest && !mayPass) return answer(response, 200, Reply(rc::storeFailed).json());
    refuse(response, 503, sentenceFor(kind));
  }

  void login(const httplib::Request& request, httplib::Response& response) {
    const auto body = readTextPair(request.body, "operator", "password");
    if (!body) return refuse(response, 400, "The body needs the texts operator and password.");
    const auto result = runner_.login(body->first, body->second, request.remote_addr);
    using Kind = RequestRunner::LoginResult::Kind;
    if (result.kind == Kind::TooMany) return refuseForNow(response, result.retryAfter);
    if (result.kind == Kind::Refused) {
      return refuse(response, 401, "The operator or the password is wrong.");
    }
    answer(response, 200, jsonObject({{"session", result.token}, {"operator", result.login}}));
  }

  void logout(const httplib::Request& request, httplib::Response& response) {
    std::string header;
    if (!runner_.logout(bearerToken(request, header))) return refuseSession(response);
    response.status = 204;
  }

  void password(const httplib::Request& request, httplib::Response& response) {
    const auto body = readTextPair(request.body, "old", "new");
    if (!body) return refuse(response, 400, "The body needs the texts old and new.");
    std::string header;
    const auto result =
        runner_.changePassword(bearerToken(request, header), body->first, body->second, request.remote_addr);
    using Kind = RequestRunner::PasswordResult::Kind;
    switch (result.kind) {
      case Kind::Changed:
        response.status = 204;
        return;
      case Kind::NoSession:
        return refuseSession(response);
      case Kind::WrongOld:
        return refuse(response, 401, "The old password is wrong.");
      case Kind::TooWeak:
        return refuse(response, 400, result.weakness);
      case Kind::TooMany:
        return refuseForNow(response, result.retryAfter);
    }
  }

  void run(const httplib::Request& request, httplib::Response& response) {
    const std::string requestId = request.get_header_value("Request-Id");
    if (requestId.empty() || requestId.size() > 64) {
      return refuse(response, 400, "A request needs a Request-Id of at most 64 characters.");
    }
    const auto tags = readMessage(request.body);
    if (!tags) return refuse(response, 400, "The body is not {\"tags\":[[\"TAG\",\"value\"]]}.");
    std::string header;
    const std::string code = request.matches[1];
    RequestRunner::Answer result = runner_.run(
        {.token = bearerToken(request, header), .code = code, .requestId = requestId, .tags = *tags});
    using Kind = RequestRunner::Answer::Kind;
    switch (result.kind) {
      case Kind::Done:
        return answer(response, 200, result.json);
      case Kind::NoSession:
        return refuseSession(response);
      case Kind::UnknownCode:
        return refuse(response, 404, "There is no request of this code.");
      case Kind::IdMisused:
        return refuse(response, 400, "The Request-Id was used for another request.");
    }
  }

  RequestRunner& runner_;
  HttpOptions options_;
  std::unique_ptr<httplib::Server> server_;
  std::thread listener_;
  std::atomic<bool> ended_ = false;
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

void HttpFront::stop() {
  impl_->stop();
}

}  // namespace vantry::server
