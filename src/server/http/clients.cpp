#include "server/http/clients.h"

#include <algorithm>
#include <stdexcept>

namespace vantry::server {

namespace {

namespace ip = boost::asio::ip;

/// The same address in its shortest family: a socket for both families tells an IPv4 client as an IPv6 one.
ip::address plain(const ip::address& address) {
  const bool mapped = address.is_v6() && address.to_v6().is_v4_mapped();
  return mapped ? ip::address(ip::make_address_v4(ip::v4_mapped, address.to_v6())) : address;
}

/// Takes the last entry of the list off.
std::string_view takeLast(std::string_view& list) {
  const std::size_t comma = list.rfind(',');
  std::string_view last = comma == std::string_view::npos ? list : list.substr(comma + 1);
  list = comma == std::string_view::npos ? std::string_view{} : list.substr(0, comma);
  while (last.starts_with(' ') || last.starts_with('\t')) last.remove_prefix(1);
  while (last.ends_with(' ') || last.ends_with('\t')) last.remove_suffix(1);
  return last;
}

}  // namespace

Clients::Clients(const std::vector<std::string>& trustedProxies) {
  for (const std::string& each : trustedProxies) {
    const bool isNetwork = each.find('/') != std::string::npos;
    boost::system::error_code error;
    if (each.find(':') == std::string::npos) {
      networksV4_.push_back(ip::make_network_v4(isNetwork ? each : each + "/32", error));
    } else {
      networksV6_.push_back(ip::make_network_v6(isNetwork ? each : each + "/128", error));
    }
    if (error) throw std::runtime_error("\"" + each + "\" is no address or network of a proxy.");
  }
}

bool Clients::isTrusted(const ip::address& peer) const {
  const ip::address address = plain(peer);
  if (address.is_v4()) {
    const ip::address_v4 asked = address.to_v4();
    return std::ranges::any_of(networksV4_, [&](const ip::network_v4& each) {
      return ip::network_v4(asked, each.prefix_length()).canonical() == each.canonical();
    });
  }
  const ip::address_v6 asked = address.to_v6();
  return std::ranges::any_of(networksV6_, [&](const ip::network_v6& each) {
    return ip::network_v6(asked, each.prefix_length()).canonical() == each.canonical();
  });
}

std::string Clients::addressOf(const ip::address& peer, std::string_view forwardedFor) const {
  ip::address client = plain(peer);
  while (isTrusted(client) && !forwardedFor.empty()) {
    boost::system::error_code error;
    const ip::address told = ip::make_address(std::string(takeLast(forwardedFor)), error);
    if (error) break;  // a list that cannot be read is believed as far as it can
    client = plain(told);
  }
  return client.to_string();
}

std::string Clients::countedBy(const ip::address& peer) {
  const ip::address address = plain(peer);
  if (address.is_v4()) return address.to_string();
  return ip::network_v6(address.to_v6(), 64).canonical().to_string();
}

}  // namespace vantry::server
