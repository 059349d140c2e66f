#include "transport/http_line.h"

#include <httplib.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include "transport/server_address.h"

namespace vantry {
namespace {

void ignoreBrokenPipes() {
  struct sigaction now {};
  sigaction(SIGPIPE, nullptr, &now);
  if (now.sa_handler == SIG_DFL) std::signal(SIGPIPE, SIG_IGN);
}

std::string nameOf(const ServerAddress& address) {
  const bool ipv6 = address.host.find(':') != std::string::npos;
  return (ipv6 ? '[' + address.host + ']' : address.host) + ':' + std::to_string(address.port);
}

/// Takes the body in as it comes, while it is neither too large nor too late.
struct BodyReader {
  std::string body;
  std::size_t largest;
  std::chrono::steady_clock::time_point deadline;
  bool tooLarge = false;
  bool tooLate = false;

  bool take(const char* data, std::size_t size, std::size_t total) {
    tooLarge = total > largest || body.size() + size > largest;
    tooLate = std::chrono::steady_clock::now() > deadline;
    if (tooLarge || tooLate) return false;
    if (body.empty()) body.reserve(total + 64);  // with room for the parser's padding
    body.append(data, size);
    return true;
  }
};

}  // namespace

/// The library's client behind the header that must not show it.
class HttpTransport::Line::Client : public httplib::Client {
 public:
  using httplib::Client::Client;
};

HttpTransport::Line::Line(Options options) : options_(std::move(options)) {
  const ServerAddress address = parseServerAddress(options_.address);
  if (!address.secured && !options_.plainBeyondLoopback && !isLoopback(address.host))
    throw std::invalid_argument("The server at " + address.host +
                                " is another machine: its address must begin with https.");
  ignoreBrokenPipes();
  secured_ = address.secured;
  serverName_ = nameOf(address);
  client_ = std::make_unique<Client>((secured_ ? "https://" : "http://") + serverName_);
  if (!options_.certificateFile.empty()) client_->set_ca_cert_path(options_.certificateFile.c_str());
  client_->set_tcp_nodelay(true);  // without it each round trip waits some 40 ms
  client_->set_keep_alive(true);
  client_->set_follow_location(false);
  client_->set_connection_timeout(options_.connectLimit);
  client_->set_read_timeout(options_.silenceLimit);
  client_->set_write_timeout(options_.silenceLimit);
}

HttpTransport::Line::~Line() = default;

void HttpTransport::Line::close() {
  client_->stop();
  isKept_ = false;
}

HttpTransport::Line::Answer HttpTransport::Line::call(const char* method, const std::string& path,
                                                      const Headers& headers, std::string body,
                                                      bool mayRepeat) {
  // A protected line does not notice that the server has closed it long ago.
  if (isKept_ && Clock::now() - lastUse_ > options_.idleLimit) close();
  const bool wasKept = isKept_;
  Answer answer = callOnce(method, path, headers, body);
  if (answer.outcome == Answer::Outcome::BrokenOff && wasKept && mayRepeat)
    answer = callOnce(method, path, headers, body);
  return answer;
}

HttpTransport::Line::Answer HttpTransport::Line::callWhileBusy(const char* method, const std::string& path,
                                                               const Headers& headers,
                                                               const std::string& body) {
  constexpr int unavailable = 503;
  const auto last = Clock::now() + options_.busyLimit;
  for (;;) {
    Answer answer = call(method, path, headers, body, true);
    const bool busy = answer.outcome == Answer::Outcome::Answered && answer.status == unavailable &&
                      answer.retryAfter > std::chrono::seconds(0);
    if (!busy || Clock::now() + answer.retryAfter > last) return answer;
    options_.wait(answer.retryAfter);
  }
}

HttpTransport::Line::Answer HttpTransport::Line::callOnce(const char* method, const std::string& path,
                                                          const Headers& headers, const std::string& body) {
  const auto start = Clock::now();
  BodyReader reader{{}, options_.largestReply, start + options_.replyLimit};
  httplib::Request request;
  request.method = method;
  request.path = path;
  request.headers.insert(headers.begin(), headers.end());
  request.headers.emplace("Accept-Encoding", "identity");  // packing costs more time than the line
  if (!body.empty()) request.headers.emplace("Content-Type", "application/json");
  request.body = body;
  request.content_receiver = [&reader](const char* data, std::size_t size, std::uint64_t,
                                       std::uint64_t total) { return reader.take(data, size, total); };
  const httplib::Result result = client_->send(request);
  lastUse_ = Clock::now();
  if (result) {
    isKept_ = true;
    return {Answer::Outcome::Answered,
            result->status,
            std::move(reader.body),
            std::chrono::seconds(std::strtol(result->get_header_value("Retry-After").c_str(), nullptr, 10)),
            {}};
  }
  close();

  Answer answer;
  answer.reason = reasonOf(static_cast<int>(result.error()));
  switch (result.error()) {
    case httplib::Error::Connection:
    case httplib::Error::ConnectionTimeout:
    case httplib::Error::BindIPAddress:
    case httplib::Error::SSLConnection:
    case httplib::Error::SSLLoadingCerts:
    case httplib::Error::SSLServerVerification:
      break;
    case httplib::Error::Canceled:
      answer.outcome = reader.tooLarge ? Answer::Outcome::TooLarge : Answer::Outcome::OutOfTime;
      break;
    default:
      answer.outcome =
          lastUse_ - start < options_.silenceLimit ? Answer::Outcome::BrokenOff : Answer::Outcome::OutOfTime;
  }
  if (answer.outcome == Answer::Outcome::OutOfTime)
    answer.reason = "The server at " + serverName_ + " did not answer in time.";
  if (answer.outcome == Answer::Outcome::TooLarge)
    answer.reason = "The answer of the server at " + serverName_ + " is too large.";
  return answer;
}

std::string HttpTransport::Line::reasonOf(int error) const {
  const std::string server = "The server at " + serverName_;
  switch (static_cast<httplib::Error>(error)) {
    case httplib::Error::Connection:
    case httplib::Error::BindIPAddress:
      return server + " cannot be reached.";
    case httplib::Error::ConnectionTimeout:
      return server + " did not answer in time.";
    case httplib::Error::SSLServerVerification:
      return "The certificate of the server at " + serverName_ + " is not trusted.";
    case httplib::Error::SSLConnection:
      return "No protected connection to the server at " + serverName_ + " could be made.";
    case httplib::Error::SSLLoadingCerts:
      return "The trusted certificates cannot be read.";
    default:
      return "The connection to the server at " + serverName_ + " was lost.";
  }
}

}  // namespace vantry
