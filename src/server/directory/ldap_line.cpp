#include "server/directory/ldap_line.h"

#include <algorithm>
#include <array>

namespace vantry::server {

namespace {

constexpr const char* authoritiesOfSystem = "/etc/ssl/certs/ca-certificates.crt";

/// What the library has allocated.
struct FreeText {
  void operator()(char* text) const { ldap_memfree(text); }
};
using Text = std::unique_ptr<char, FreeText>;

/// The library does not write through it.
berval bytesOf(std::string_view text) {
  return {.bv_len = text.size(), .bv_val = const_cast<char*>(text.data())};
}

std::string replaced(std::string_view pattern, std::string_view value) {
  const std::string_view mark = loginMark;
  std::string text;
  for (std::size_t at = pattern.find(mark); at != std::string_view::npos; at = pattern.find(mark)) {
    text.append(pattern.substr(0, at)).append(value);
    pattern.remove_prefix(at + mark.size());
  }
  return text.append(pattern);
}

/// With these the directory refuses this entry; all others say that something is wrong with the asking.
bool isRefusal(int code) {
  constexpr std::array refusals{LDAP_INVALID_CREDENTIALS, LDAP_NO_SUCH_OBJECT,
                                LDAP_INAPPROPRIATE_AUTH,  LDAP_CONSTRAINT_VIOLATION,
                                LDAP_INSUFFICIENT_ACCESS, LDAP_UNWILLING_TO_PERFORM};
  return std::ranges::find(refusals, code) != refusals.end();
}

/// With a limit of the library's own for it, the handshake would not wait but spin.
int beginConnection(LDAP* line, Sockbuf* connection, LDAPURLDesc*, sockaddr*, ldap_conncb* self) {
  constexpr timeval unlimited{.tv_sec = -1, .tv_usec = 0};
  ldap_set_option(line, LDAP_OPT_NETWORK_TIMEOUT, &unlimited);
  int socket = -1;
  ber_sockbuf_ctrl(connection, LBER_SB_OPT_GET_FD, &socket);
  static_cast<ConnectionLimit*>(self->lc_arg)->watch(socket);
  return 0;
}

void endConnection(LDAP*, Sockbuf*, ldap_conncb* self) {
  static_cast<ConnectionLimit*>(self->lc_arg)->watch(-1);
}

}  // namespace

void prepareLdap() {
  constexpr int version = LDAP_VERSION3;
  ldap_set_option(nullptr, LDAP_OPT_PROTOCOL_VERSION, &version);
}

std::string nameFor(std::string_view pattern, std::string_view login) {
  constexpr std::string_view key = "x=";
  LDAPAVA pair{.la_attr = bytesOf(key.substr(0, 1)),
               .la_value = bytesOf(login),
               .la_flags = LDAP_AVA_STRING,
               .la_private = nullptr};
  std::array<LDAPAVA*, 2> part{&pair, nullptr};
  std::array<LDAPRDN, 2> whole{part.data(), nullptr};
  char* written = nullptr;
  if (ldap_dn2str(whole.data(), &written, LDAP_DN_FORMAT_LDAPV3) != LDAP_SUCCESS)
    throw DirectoryFault("the log-on name cannot be written as a part of an entry's name");
  const Text text(written);
  return replaced(pattern, std::string_view(text.get()).substr(key.size()));
}

std::string filterFor(std::string_view pattern, std::string_view login) {
  berval plain = bytesOf(login);
  berval escaped{};
  if (ldap_bv2escaped_filter_value(&plain, &escaped) != 0)
    throw DirectoryFault("the log-on name cannot be written as a part of a filter");
  const Text text(escaped.bv_val);
  return replaced(pattern, {escaped.bv_val, escaped.bv_len});
}

bool isEntryName(const std::string& name) {
  LDAPDN parts = nullptr;
  const bool isOne =
      ldap_str2dn(name.c_str(), &parts, LDAP_DN_FORMAT_LDAPV3) == LDAP_SUCCESS && parts != nullptr;
  ldap_dnfree(parts);
  return isOne;
}

LdapLine::LdapLine(const DirectorySettings& settings, const std::string& address, Clock::time_point end)
    : end_(end),
      limit_(end_),
      onConnection_{.lc_add = beginConnection, .lc_del = endConnection, .lc_arg = &limit_} {
  LDAP* made = nullptr;
  const int code = ldap_initialize(&made, address.c_str());
  line_.reset(made);
  need(code);
  constexpr int demand = LDAP_OPT_X_TLS_DEMAND;
  constexpr int asClient = 0;
  set(LDAP_OPT_CONNECT_CB, &onConnection_);
  set(LDAP_OPT_REFERRALS, LDAP_OPT_OFF);
  if (settings.plain) return;
  set(LDAP_OPT_X_TLS_REQUIRE_CERT, &demand);
  set(LDAP_OPT_X_TLS_CACERTFILE,
      settings.authority.empty() ? authoritiesOfSystem : settings.authority.c_str());
  set(LDAP_OPT_X_TLS_NEWCTX, &asClient);
  limitNextStep();
  if (address.starts_with("ldap://")) need(ldap_start_tls_s(line_.get(), nullptr, nullptr));
}

bool LdapLine::isLetIn(const std::string& entry, std::string_view password) {
  limitNextStep();
  berval secret = bytesOf(password);
  const int code =
      ldap_sasl_bind_s(line_.get(), entry.c_str(), LDAP_SASL_SIMPLE, &secret, nullptr, nullptr, nullptr);
  if (isRefusal(code)) return false;
  need(code);
  return true;
}

LdapLine::Found LdapLine::search(const std::string& base, int scope, const std::string& filter) {
  constexpr int most = 2;
  std::string nothing = LDAP_NO_ATTRS;
  std::array<char*, 2> attributes{nothing.data(), nullptr};
  timeval limit = limitNextStep();
  LDAPMessage* found = nullptr;
  const int code = ldap_search_ext_s(line_.get(), base.c_str(), scope, filter.c_str(), attributes.data(), 0,
                                     nullptr, nullptr, &limit, most, &found);
  return {code, Message(found)};
}

std::optional<std::string> LdapLine::find(const std::string& base, const std::string& filter) {
  const Found found = search(base, LDAP_SCOPE_SUBTREE, filter);
  const bool areMore = found.code == LDAP_SIZELIMIT_EXCEEDED;
  if (!areMore) need(found.code);
  const int count = ldap_count_entries(line_.get(), found.entries.get());
  if (areMore || count > 1) throw DirectoryFault("more than one entry fits " + filter);
  if (count == 0) return std::nullopt;
  const Text name(ldap_get_dn(line_.get(), ldap_first_entry(line_.get(), found.entries.get())));
  if (!name) throw DirectoryFault("an entry has no name");
  return name.get();
}

void LdapLine::greet() {
  // What the library finds out by itself is below zero; anything else came from the directory.
  const Found found = search({}, LDAP_SCOPE_BASE, "(objectClass=*)");
  if (found.code < 0) fail(found.code);
}

void LdapLine::set(int option, const void* value) {
  if (ldap_set_option(line_.get(), option, value) != LDAP_OPT_SUCCESS)
    throw DirectoryFault("the LDAP library does not take its settings, or the file of the authority");
}

/// Gives what follows the time that is left.
timeval LdapLine::limitNextStep() {
  const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end_ - Clock::now());
  if (left.count() <= 0) fail(LDAP_TIMEOUT);
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
  const timeval time{.tv_sec = seconds.count(), .tv_usec = (left - seconds).count()};
  set(LDAP_OPT_NETWORK_TIMEOUT, &time);
  set(LDAP_OPT_TIMEOUT, &time);
  return time;
}

void LdapLine::need(int code) {
  if (code != LDAP_SUCCESS) fail(code);
}

/// Of a handshake that fails the library says nothing but that it did.
void LdapLine::fail(int code) {
  if (Clock::now() >= end_) throw DirectoryFault("it does not answer in time");
  char* told = nullptr;
  if (line_) ldap_get_option(line_.get(), LDAP_OPT_DIAGNOSTIC_MESSAGE, &told);
  const Text text(told);
  const bool tellsMore = text && *text != '\0';
  if (tellsMore && limit_.wasReached() && (code == LDAP_CONNECT_ERROR || code == LDAP_SERVER_DOWN))
    throw DirectoryFault("TLS fails; its certificate is not trusted, has ended or is one of another host");
  std::string reason = ldap_err2string(code);
  if (tellsMore) reason.append(" (").append(text.get()).append(")");
  throw DirectoryFault(reason);
}

}  // namespace vantry::server
