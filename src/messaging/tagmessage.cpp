#include "messaging/tagmessage.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

#include "messaging/dialogs.h"
#include "messaging/return_codes.h"
#include "messaging/server_session.h"
#include "platform/desktop.h"

namespace vantry {
namespace {

/// The request that tells a session at which location it works.
constexpr std::string_view kLocationRequest = "SLL";

Reply failure(int rc) {
  Reply reply;
  reply.rc = rc;
  return reply;
}

}  // namespace

bool TagMessage::Connect(int /*moduleNumber*/, ServerSession& session, ConnectDialog& dialog) {
  // One server serves all modules, so the module's number is not used.
  dialog.open();
  std::string reason;
  while (!transport_.reach(reason)) {
    if (dialog.askRetry(reason)) continue;
    dialog.Close();
    return false;
  }
  session.setIndicator(transport_.secured());
  return true;
}

void TagMessage::Add(std::string_view tag, std::string_view value) {
  outgoing_.push_back({std::string(tag), std::string(value)});
}

int TagMessage::Send(std::string_view code) {
  const Request request{newRequestId(), std::string(code), std::exchange(outgoing_, {})};
  if (sending_) return codes::Busy;
  forgetReply();
  refusal_.clear();
  sending_ = true;
  DeliveryResult result;
  try {
    result = deliver(request);
  } catch (...) {
    sending_ = false;
    throw;
  }
  sending_ = false;
  outgoing_.clear();
  switch (result.delivery) {
    case Delivery::Answered:
      if (result.reply.rc == codes::Lost) giveUp();
      if (code == kLocationRequest && result.reply.rc == 0) location_ = request.tags;
      return take(std::move(result.reply));
    case Delivery::Rejected:
      refusal_ = std::move(result.reason);
      return take(failure(codes::NotTaken));
    default:
      giveUp();
  }
}

void TagMessage::giveUp() {
  if (OnGivenUp) OnGivenUp();
  throw ProgramEnd{};
}

/// Until the server has answered or refused, or the operator gives up: the same request with the same id,
/// which the server runs once.
DeliveryResult TagMessage::deliver(const Request& request) {
  for (;;) {
    DeliveryResult result = transport_.send(request);
    switch (result.delivery) {
      case Delivery::Answered:
      case Delivery::Rejected:
        return result;
      case Delivery::SessionEnded:
        if (!resumeSession()) return result;
        break;
      case Delivery::NotDelivered:
      case Delivery::Unknown:
        if (!OnLost || !OnLost(result.reason)) return result;
        break;
    }
  }
}

/// After a new log-on the session knows its operator only; the location has to be told again. Whether the
/// server still grants it shows in the request that waits.
bool TagMessage::resumeSession() {
  if (!OnSessionEnded || !OnSessionEnded()) return false;
  if (location_.empty()) return true;
  const DeliveryResult told = deliver({newRequestId(), std::string(kLocationRequest), location_});
  return told.delivery == Delivery::Answered || told.delivery == Delivery::Rejected;
}

int TagMessage::take(Reply reply) {
  forgetReply();
  reply_ = std::move(reply);
  return reply_.rc;
}

void TagMessage::forgetReply() {
  reply_ = {};
  cursors_.clear();
  current_ = -1;
}

std::string TagMessage::Get(std::string_view tag) const {
  if (current_ >= 0) return std::string(reply_.value(current_, tag).text);
  for (int record = -1; record < reply_.recordCount(); ++record) {
    const Reply::Value value = reply_.value(record, tag);
    if (value.present) return std::string(value.text);
  }
  return {};
}

int TagMessage::Count(std::string_view tag) const {
  int count = 0;
  for (int record = 0; record < reply_.recordCount(); ++record) {
    if (reply_.value(record, tag).present) ++count;
  }
  return count;
}

bool TagMessage::NextRecord(std::string_view tag) {
  const auto known = cursors_.find(tag);
  int& cursor = known != cursors_.end() ? known->second : cursors_.emplace(tag, -1).first->second;
  while (cursor < reply_.recordCount() && !reply_.value(++cursor, tag).present) {
  }
  current_ = cursor < reply_.recordCount() ? cursor : -1;
  return current_ >= 0;
}

TagMessage::Inner::Inner(TagMessage& message)
    : message_(message),
      outgoing_(std::exchange(message.outgoing_, {})),
      reply_(std::exchange(message.reply_, {})),
      cursors_(std::exchange(message.cursors_, {})),
      current_(std::exchange(message.current_, -1)) {}

TagMessage::Inner::~Inner() {
  message_.outgoing_ = std::move(outgoing_);
  message_.reply_ = std::move(reply_);
  message_.cursors_ = std::move(cursors_);
  message_.current_ = current_;
}

std::string newRequestId() {
  // A version 4 UUID. std::random_device may ask the processor, which takes 26 µs where the system takes 0.3.
  std::array<std::uint32_t, 4> words{};
  if (getentropy(words.data(), sizeof words) != 0)
    throw std::system_error(errno, std::generic_category(), "The system gives no random numbers");
  words[1] = (words[1] & 0xFFFF0FFFU) | 0x00004000U;
  words[2] = (words[2] & 0x3FFFFFFFU) | 0x80000000U;
  std::string id;
  for (const std::uint32_t bits : words) {
    for (int shift = 28; shift >= 0; shift -= 4) id += "0123456789abcdef"[(bits >> shift) & 0xFU];
  }
  for (const std::size_t place : {8U, 13U, 18U, 23U}) id.insert(place, 1, '-');
  return id;
}

}  // namespace vantry
