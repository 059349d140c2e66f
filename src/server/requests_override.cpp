// A supervisor's login that stands in for a right of the operator.

#include <array>

#include <sodium.h>

#include "server/handlers.h"
#include "server/passwords.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

constexpr int notAuthorized = 120;
constexpr int wrongLogin = 121;

/// The password travels in base64, so that nothing in it can be mistaken for the message's own marks.
std::optional<std::string> decode(std::string_view text) {
  std::string bytes(text.size(), '\0');
  std::size_t length = 0;
  const int failed =
      sodium_base642bin(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size(), text.data(),
                        text.size(), nullptr, &length, nullptr, sodium_base64_VARIANT_ORIGINAL);
  if (failed != 0) return std::nullopt;
  bytes.resize(length);
  return bytes;
}

std::string_view rightAsked(const Message& message) {
  for (const std::string_view right : {tags::OVPAT, tags::OVITM, tags::OVOTR}) {
    if (message.has(right)) return right;
  }
  return {};
}

bool holdsRightHere(Context& context, std::int64_t operatorId, std::string_view right) {
  Session supervisor = context.session;
  supervisor.operatorId = operatorId;
  return holdsAnyRight(context.db, supervisor, right);
}

/// The right counts at the location where the operator works, not where the supervisor does.
Reply standIn(Context& context, const Message& message) {
  const std::string_view login = message.text(tags::OI);
  const std::string_view right = rightAsked(message);
  const auto note = [&](std::string_view action) {
    audit(context.db, &context.session, context.now, action, login, right);
  };
  if (bookLoginTry(context.db, login, "desk of " + context.session.login, context.now)) {
    note("override refused");
    return Reply(wrongLogin);
  }
  const std::optional<OperatorAccount> account = findOperator(context.db, login);
  const std::optional<std::string> password = decode(message.text(tags::PW));
  if (!account || !account->active || !password || !matchesPassword(account->password, *password)) {
    note("override refused");
    return Reply(wrongLogin);
  }
  forgetLoginTries(context.db, login);
  if (!holdsRightHere(context, account->id, right)) {
    note("override without right");
    return Reply(notAuthorized);
  }
  note("override");
  return Reply();
}

constexpr std::array rows{HandlerRow{"OPOV", standIn}};

}  // namespace

std::span<const HandlerRow> overrideRequests() {
  return rows;
}

}  // namespace vantry::server
