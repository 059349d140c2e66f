#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <boost/asio/ip/address.hpp>
#include <boost/asio/ip/network_v4.hpp>
#include <boost/asio/ip/network_v6.hpp>

namespace vantry::server {

/// Tells who a client is where proxies may speak for it.
class Clients {
 public:
  /// Takes addresses and networks: "10.0.0.5", "10.0.0.0/8", "fd00::/8". Throws std::runtime_error for
  /// others.
  explicit Clients(const std::vector<std::string>& trustedProxies);

  [[nodiscard]] bool isTrusted(const boost::asio::ip::address& peer) const;

  /// The address of the client: the peer's, or the last one in X-Forwarded-For that no trusted proxy has.
  [[nodiscard]] std::string addressOf(const boost::asio::ip::address& peer,
                                      std::string_view forwardedFor) const;

  /// What one client's connections are counted by. Of IPv6 a client has a whole network of 64 bits.
  [[nodiscard]] static std::string countedBy(const boost::asio::ip::address& peer);

 private:
  std::vector<boost::asio::ip::network_v4> networksV4_;
  std::vector<boost::asio::ip::network_v6> networksV6_;
};

}  // namespace vantry::server
