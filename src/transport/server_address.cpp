#include "transport/server_address.h"

#include <charconv>
#include <stdexcept>

#include "platform/text.h"

namespace vantry {
namespace {

[[noreturn]] void isNone(std::string_view text) {
  throw std::invalid_argument('"' + std::string(text) +
                              "\" is no address of a server; one reads https://host or https://host:port.");
}

constexpr int kHttpPort = 80;
constexpr int kHttpsPort = 443;
constexpr int kLastPort = 65535;
constexpr std::string_view kHostCharacters = "abcdefghijklmnopqrstuvwxyz0123456789-._";
constexpr std::string_view kIpv6Characters = "0123456789abcdef:.";

}  // namespace

ServerAddress parseServerAddress(std::string_view text) {
  const std::string small = lower(trim(text));
  std::string_view rest = small;
  ServerAddress address;
  address.secured = rest.starts_with("https://");
  if (!address.secured && !rest.starts_with("http://")) isNone(text);
  rest.remove_prefix(address.secured ? 8 : 7);
  if (rest.ends_with('/')) rest.remove_suffix(1);

  const bool ipv6 = rest.starts_with('[');
  const auto hostEnd = ipv6 ? rest.find(']') : std::min(rest.find(':'), rest.size());
  if (hostEnd == std::string_view::npos) isNone(text);
  address.host = rest.substr(ipv6 ? 1 : 0, hostEnd - (ipv6 ? 1 : 0));
  rest.remove_prefix(hostEnd + (ipv6 ? 1 : 0));
  const std::string_view allowed = ipv6 ? kIpv6Characters : kHostCharacters;
  if (address.host.empty() || address.host.find_first_not_of(allowed) != std::string::npos) isNone(text);

  address.port = address.secured ? kHttpsPort : kHttpPort;
  if (rest.empty()) return address;
  const char* const end = rest.data() + rest.size();
  const auto [stop, error] = std::from_chars(rest.data() + 1, end, address.port);
  if (rest.front() != ':' || error != std::errc{} || stop != end || address.port < 1 ||
      address.port > kLastPort)
    isNone(text);
  return address;
}

bool isLoopback(std::string_view host) {
  return host == "localhost" || host == "::1" || host.starts_with("127.");
}

}  // namespace vantry
