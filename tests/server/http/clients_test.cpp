#include "server/http/clients.h"

#include <gtest/gtest.h>

namespace vantry::server {
namespace {

using boost::asio::ip::make_address;

TEST(Clients, AreTakenFromTheHeaderOnlyOfATrustedProxy) {
  const Clients clients({"10.0.0.0/8", "192.0.2.7", "fd00::/8"});
  struct Case {
    const char* peer;
    const char* forwardedFor;
    const char* address;
  };
  const Case cases[] = {
      {"198.51.100.1", "203.0.113.9", "198.51.100.1"},
      {"10.1.2.3", "203.0.113.9", "203.0.113.9"},
      {"::ffff:10.1.2.3", "203.0.113.9", "203.0.113.9"},
      {"fd00::1", "2001:db8::5", "2001:db8::5"},
      {"10.1.2.3", "", "10.1.2.3"},
      {"10.1.2.3", "1.2.3.4, 203.0.113.9, 192.0.2.7",
       "203.0.113.9"},  // what the client claims is not believed
      {"10.1.2.3", "10.9.9.9", "10.9.9.9"},
      {"10.1.2.3", "203.0.113.9, unknown", "10.1.2.3"},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(clients.addressOf(make_address(each.peer), each.forwardedFor), each.address)
        << each.peer << " " << each.forwardedFor;
  }
  EXPECT_THROW(Clients({"proxy.example"}), std::runtime_error);
  EXPECT_THROW(Clients({"10.0.0.0/40"}), std::runtime_error);
}

TEST(Clients, AreCountedByNetworkWhereTheyHaveAWholeOne) {
  EXPECT_EQ(Clients::countedBy(make_address("2001:db8::1:2")),
            Clients::countedBy(make_address("2001:db8::9:9")));
  EXPECT_NE(Clients::countedBy(make_address("2001:db8::1")),
            Clients::countedBy(make_address("2001:db8:0:1::1")));
  EXPECT_EQ(Clients::countedBy(make_address("::ffff:10.0.0.1")), "10.0.0.1");
}

}  // namespace
}  // namespace vantry::server
