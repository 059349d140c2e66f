#include "transport/sealed_box.h"

#include <gtest/gtest.h>
#include <sodium.h>

#include <array>
#include <vector>

#include "support/scripted_server.h"

namespace vantry::test {
namespace {

struct ServerWithKey : ScriptedServer {
  std::string key;
  [[nodiscard]] std::string passwordKey() override { return key; }
};

std::string base64(const unsigned char* bytes, std::size_t count) {
  std::string text(sodium_base64_ENCODED_LEN(count, sodium_base64_VARIANT_ORIGINAL), '\0');
  sodium_bin2base64(text.data(), text.size(), bytes, count, sodium_base64_VARIANT_ORIGINAL);
  text.pop_back();
  return text;
}

TEST(SealedBoxes, OnlyTheServerOpensThem) {
  ASSERT_GE(sodium_init(), 0);
  std::array<unsigned char, crypto_box_PUBLICKEYBYTES> open{};
  std::array<unsigned char, crypto_box_SECRETKEYBYTES> secret{};
  crypto_box_keypair(open.data(), secret.data());
  ServerWithKey server;
  server.key = base64(open.data(), open.size());
  SealedBox sealer(server);
  const std::string password = "s\xC3\xA9same";
  const auto sealed = sealer.seal(password);
  ASSERT_TRUE(sealed);
  EXPECT_NE(sealer.seal(password), sealed) << "the same password never looks the same";

  std::vector<unsigned char> box(sealed->size());
  std::size_t length = 0;
  ASSERT_EQ(sodium_base642bin(box.data(), box.size(), sealed->data(), sealed->size(), nullptr, &length,
                              nullptr, sodium_base64_VARIANT_ORIGINAL),
            0);
  std::string clear(length - crypto_box_SEALBYTES, '\0');
  ASSERT_EQ(crypto_box_seal_open(reinterpret_cast<unsigned char*>(clear.data()), box.data(), length,
                                 open.data(), secret.data()),
            0);
  EXPECT_EQ(clear, password);
}

TEST(SealedBoxes, WithoutASoundKeyNothingIsSealed) {
  ServerWithKey server;
  SealedBox sealer(server);
  for (const char* key : {"", "abc", "!!", "AAAA"}) {
    server.key = key;
    EXPECT_EQ(sealer.seal("secret"), std::nullopt) << key;
  }
}

}  // namespace
}  // namespace vantry::test
