#include "server/program/setup_asking.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>

#include "server/base/user_error.h"
#include "server/http/certificate.h"
#include "server/http/clients.h"

namespace vantry::server {

namespace {

constexpr std::array reaches{"this-machine", "proxy", "certificate"};

std::string faultOfAddress(const std::string& address) {
  std::array<unsigned char, sizeof(in6_addr)> bytes{};
  const bool isAddress = inet_pton(AF_INET, address.c_str(), bytes.data()) == 1 ||
                         inet_pton(AF_INET6, address.c_str(), bytes.data()) == 1;
  return isAddress ? "" : inQuotes(address) + " is no address such as 0.0.0.0, for all of this machine's.";
}

std::string faultOfPort(const std::string& text) {
  int port = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, port);
  const bool isPort = rest == end && error == std::errc{} && port >= 1024 && port <= 65535;
  return isPort ? "" : "A port is a number from 1024 to 65535.";
}

void needValid(const std::string& certificate) {
  if (endOfCertificate(certificate) < std::time(nullptr))
    throw UserError("The certificate " + inQuotes(certificate) + " has ended.");
}

class ReachQuestions {
 public:
  explicit ReachQuestions(SetupAsking& asking) : asking_(asking) {}

  void run() {
    const std::string reach = asking_.dialog.answer(
        {.text = "Who reaches the server (this-machine; proxy, which speaks TLS in front of it; "
                 "certificate, to speak TLS itself)",
         .suggestion = standingReach(),
         .fault =
             [](const std::string& answer) {
               const bool isKnown = std::ranges::find(reaches, answer) != reaches.end();
               return isKnown ? "" : "The answer is this-machine, proxy or certificate.";
             }},
        asking_.given.reach);
    askAddress(reach);
    askProxy(reach == "proxy");
    askCertificate(reach == "certificate");
  }

 private:
  [[nodiscard]] std::string standingReach() const {
    if (!asking_.standing("serve.certificate", "").empty()) return "certificate";
    return asking_.isSwitchedOn("serve.behind-proxy") ? "proxy" : "this-machine";
  }

  void askAddress(const std::string& reach) {
    const std::string loopback = "127.0.0.1";
    const std::string address = asking_.standing("serve.address", loopback);
    const bool isOpen = reach == "certificate";
    std::string chosen = loopback;
    if (reach != "this-machine") {
      chosen = asking_.dialog.answer({.text = "Address to listen on",
                                      .suggestion = isOpen && address == loopback ? "0.0.0.0" : address,
                                      .fault = faultOfAddress},
                                     asking_.given.address);
    }
    asking_.set("serve.address", chosen);
    asking_.set("serve.port", asking_.dialog.answer({.text = "Port to listen on",
                                                     .suggestion = asking_.standing("serve.port", "8750"),
                                                     .fault = faultOfPort},
                                                    asking_.given.port));
  }

  void askProxy(bool isProxy) {
    asking_.set("serve.behind-proxy", isProxy ? "true" : "");
    if (!isProxy) return asking_.set("serve.trusted-proxy", "");
    const std::string proxy = asking_.dialog.answer(
        {.text = "Address of the proxy",
         .suggestion = asking_.standing("serve.trusted-proxy", "127.0.0.1"),
         .fault = [](const std::string& answer) { return faultOf([&] { const Clients check({answer}); }); }},
        asking_.given.proxy);
    asking_.set("serve.trusted-proxy", proxy);
  }

  void askCertificate(bool isOwn) {
    CertificateFiles files;
    if (isOwn) {
      files.certificate = absolutePath(asking_.dialog.answer(
          {.text = "File of the certificate (PEM)",
           .suggestion = asking_.standing("serve.certificate", "/etc/vantry/certificate.pem"),
           .fault =
               [&](const std::string& answer) {
                 return asking_.faultAsService([&] { needValid(absolutePath(answer)); });
               }},
          asking_.given.certificate));
      files.key = absolutePath(asking_.dialog.answer(
          {.text = "File of its key (PEM)",
           .suggestion = asking_.standing("serve.key", "/etc/vantry/key.pem"),
           .fault =
               [&](const std::string& answer) {
                 return asking_.faultAsService([&] {
                   checkCertificate({.certificate = files.certificate, .key = absolutePath(answer)});
                 });
               }},
          asking_.given.key));
    }
    asking_.set("serve.certificate", files.certificate);
    asking_.set("serve.key", files.key);
  }

  SetupAsking& asking_;
};

}  // namespace

void askReach(SetupAsking& asking) {
  ReachQuestions(asking).run();
}

}  // namespace vantry::server
