#include "server/access/passwords.h"

#include <array>
#include <semaphore>
#include <stdexcept>

#include <sodium.h>

namespace vantry::server {

namespace {

constexpr std::size_t shortestPassword = 8;
constexpr std::size_t longestPassword = 512;
constexpr std::size_t longestName = 64;

void prepare() {
  static const bool ready = sodium_init() >= 0;
  if (!ready) throw std::runtime_error("the cryptographic library does not start");
}

/// One hash takes 64 MiB for its time; a crowd at the door must not take the machine's memory.
std::counting_semaphore<2>& hashers() {
  static std::counting_semaphore<2> turns{2};
  return turns;
}

class HashTurn {
 public:
  HashTurn() { hashers().acquire(); }
  ~HashTurn() { hashers().release(); }
  HashTurn(const HashTurn&) = delete;
  HashTurn& operator=(const HashTurn&) = delete;
};

std::string hexOf(const unsigned char* bytes, std::size_t count) {
  std::string text(count * 2 + 1, '\0');
  sodium_bin2hex(text.data(), text.size(), bytes, count);
  text.pop_back();
  return text;
}

}  // namespace

std::string hashPassword(std::string_view password, HashCost cost) {
  prepare();
  const HashTurn turn;
  const bool quick = cost == HashCost::Quick;
  std::array<char, crypto_pwhash_STRBYTES> hash{};
  const int failed =
      crypto_pwhash_str(hash.data(), password.data(), password.size(),
                        quick ? crypto_pwhash_OPSLIMIT_MIN : crypto_pwhash_OPSLIMIT_INTERACTIVE,
                        quick ? crypto_pwhash_MEMLIMIT_MIN : crypto_pwhash_MEMLIMIT_INTERACTIVE);
  if (failed != 0) throw std::runtime_error("not enough memory to hash a password");
  return hash.data();
}

bool matchesPassword(std::string_view hash, std::string_view password) {
  prepare();
  const HashTurn turn;
  return crypto_pwhash_str_verify(std::string(hash).c_str(), password.data(), password.size()) == 0;
}

void wasteCheck(std::string_view password, HashCost cost) {
  (void)hashPassword(password, cost);
}

bool mayBeLogin(std::string_view name, std::string_view password) {
  return name.size() <= longestName && password.size() <= longestPassword;
}

std::string weaknessOf(std::string_view password) {
  if (password.size() < shortestPassword) return "A password needs at least 8 characters.";
  if (password.size() > longestPassword) return "A password has at most 512 characters.";
  if (password.find_first_not_of(password.front()) == std::string_view::npos) {
    return "A password needs different characters.";
  }
  return {};
}

std::string makeToken() {
  prepare();
  std::array<unsigned char, 32> bytes{};
  randombytes_buf(bytes.data(), bytes.size());
  return hexOf(bytes.data(), bytes.size());
}

std::string hashToken(std::string_view token) {
  prepare();
  std::array<unsigned char, 32> hash{};
  crypto_generichash(hash.data(), hash.size(), reinterpret_cast<const unsigned char*>(token.data()),
                     token.size(), nullptr, 0);
  return hexOf(hash.data(), hash.size());
}

}  // namespace vantry::server
