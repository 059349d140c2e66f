#include "server/access/sealing.h"
#include "server/store/query.h"

#include <stdexcept>
#include <vector>

#include <sodium.h>

namespace vantry::server {

namespace {

using Bytes = std::vector<unsigned char>;

void prepare() {
  static const bool ready = sodium_init() >= 0;
  if (!ready) throw std::runtime_error("the cryptographic library does not start");
}

std::string base64Of(const Bytes& bytes) {
  std::string text(sodium_base64_ENCODED_LEN(bytes.size(), sodium_base64_VARIANT_ORIGINAL), '\0');
  sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), sodium_base64_VARIANT_ORIGINAL);
  text.pop_back();  // the function ends its text with a NUL
  return text;
}

std::optional<Bytes> bytesOf(std::string_view text) {
  if (text.empty()) return std::nullopt;
  Bytes bytes(text.size());
  std::size_t length = 0;
  const int failed = sodium_base642bin(bytes.data(), bytes.size(), text.data(), text.size(), nullptr, &length,
                                       nullptr, sodium_base64_VARIANT_ORIGINAL);
  if (failed != 0) return std::nullopt;
  bytes.resize(length);
  return bytes;
}

SealingKeys makeKeys() {
  Bytes open(crypto_box_PUBLICKEYBYTES);
  Bytes secret(crypto_box_SECRETKEYBYTES);
  crypto_box_keypair(open.data(), secret.data());
  return {base64Of(open), base64Of(secret)};
}

SealingKeys readKeys(Connection& db) {
  SealingKeys keys;
  Query query(db, "select open_key, secret_key from sealing_keys where id = 1");
  query.into(keys.open, keys.secret);
  while (query.next()) {
  }
  return keys;
}

}  // namespace

SealingKeys keysOf(Database& database) {
  prepare();
  SealingKeys keys;
  database.read([&](Connection& db) { keys = readKeys(db); });
  if (!keys.open.empty()) return keys;
  const SealingKeys fresh = makeKeys();
  database.write([&](Connection& db) {
    Query query(db,
                "insert into sealing_keys (id, open_key, secret_key) values (1, :open_key, :secret_key) "
                "on conflict do nothing");
    query.bind("open_key", fresh.open).bind("secret_key", fresh.secret).later();
    keys = readKeys(db);
  });
  return keys;
}

std::optional<std::string> openSealed(const SealingKeys& keys, std::string_view sealed) {
  prepare();
  const std::optional<Bytes> box = bytesOf(sealed);
  const Bytes open = bytesOf(keys.open).value_or(Bytes());
  const Bytes secret = bytesOf(keys.secret).value_or(Bytes());
  const bool keysSound =
      open.size() == crypto_box_PUBLICKEYBYTES && secret.size() == crypto_box_SECRETKEYBYTES;
  if (!keysSound || !box || box->size() < crypto_box_SEALBYTES) return std::nullopt;
  std::string text(box->size() - crypto_box_SEALBYTES, '\0');
  auto* clear = reinterpret_cast<unsigned char*>(text.data());
  if (crypto_box_seal_open(clear, box->data(), box->size(), open.data(), secret.data()) != 0)
    return std::nullopt;
  return text;
}

std::string sealFor(const SealingKeys& keys, std::string_view text) {
  prepare();
  const Bytes open = bytesOf(keys.open).value_or(Bytes());
  if (open.size() != crypto_box_PUBLICKEYBYTES) throw std::runtime_error("no key to seal to");
  Bytes box(text.size() + crypto_box_SEALBYTES);
  crypto_box_seal(box.data(), reinterpret_cast<const unsigned char*>(text.data()), text.size(), open.data());
  return base64Of(box);
}

}  // namespace vantry::server
