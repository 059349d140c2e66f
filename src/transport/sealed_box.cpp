#include "transport/sealed_box.h"

#include <sodium.h>

#include <array>
#include <stdexcept>
#include <vector>

namespace vantry {
namespace {

using PublicKey = std::array<unsigned char, crypto_box_PUBLICKEYBYTES>;

std::optional<PublicKey> keyOf(std::string_view text) {
  PublicKey key{};
  std::size_t length = 0;
  const int failed = sodium_base642bin(key.data(), key.size(), text.data(), text.size(), nullptr, &length,
                                       nullptr, sodium_base64_VARIANT_ORIGINAL);
  if (failed != 0 || length != key.size()) return std::nullopt;
  return key;
}

std::string base64(const std::vector<unsigned char>& bytes) {
  std::string text(sodium_base64_ENCODED_LEN(bytes.size(), sodium_base64_VARIANT_ORIGINAL), '\0');
  sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), sodium_base64_VARIANT_ORIGINAL);
  text.pop_back();  // the function ends its text with a NUL
  return text;
}

}  // namespace

std::optional<std::string> SealedBox::seal(std::string_view password) {
  if (sodium_init() < 0) throw std::runtime_error("libsodium cannot be used");
  const auto key = keyOf(transport_.passwordKey());
  if (!key) return std::nullopt;
  std::vector<unsigned char> sealed(password.size() + crypto_box_SEALBYTES);
  const auto* clear = reinterpret_cast<const unsigned char*>(password.data());
  if (crypto_box_seal(sealed.data(), clear, password.size(), key->data()) != 0) return std::nullopt;
  return base64(sealed);
}

}  // namespace vantry
