#include "server/requests/serve.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "server/access/audit.h"
#include "server/desk/booking_store.h"
#include "server/desk/library_border.h"
#include "server/requests/audit_words.h"
#include "server/requests/booking_news.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

Pending<bool> asksForOthersBooking(Context& context, const Message& message) {
  std::vector<Pending<bool>> others;
  for (const std::int64_t id : message.numbers(tags::BOOKID)) {
    if (id != 0) others.push_back(askOtherLibrary(context.db, id, context.session.locationId));
  }
  return Pending<bool>([others = std::move(others)] {
    return std::ranges::any_of(others, [](const Pending<bool>& each) { return each.get(); });
  });
}

constexpr std::size_t longestValue = 60;
constexpr std::size_t longestDetail = 600;

/// The beginning of a text, no character of which is cut through.
std::string_view beginningOf(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0U) == 0x80U) --most;
  return text.substr(0, most);
}

/// What the request asked for: "STIME=2026-03-02 10:00:00, PID=1".
std::string askedInShort(const AuditWord& word, const Message& message) {
  std::string text;
  for (const TagValue& pair : message.tags()) {
    if (pair.tag == word.key || pair.value.empty()) continue;
    if (!text.empty()) text += ", ";
    text += pair.tag + "=";
    text += beginningOf(pair.value, longestValue);
    if (text.size() > longestDetail) return std::string(beginningOf(text, longestDetail)) + " ...";
  }
  return text;
}

/// One writing request, as the audit tells it: the records, what they were before, and what was asked. What
/// they are is asked for at once, and read before the request runs.
class AuditedRun {
 public:
  AuditedRun(const AuditWord& word, Context& context, const Message& message)
      : word_(word), context_(context), message_(message) {
    if (word.key.empty()) return;
    for (const std::int64_t id : message.numbers(word.key))
      found_.emplace_back(id, askShort(context.db, word.kind, id));
  }

  /// Remembers those that there are: what somebody has deleted before is not written.
  void readBefore() {
    std::string all;
    for (const auto& [id, asked] : found_) {
      const std::string text = asked.get();
      if (text.empty()) continue;
      records_.push_back(id);
      all += (all.empty() ? "" : "; ") + text;
    }
    before_ = beginningOf(all, longestDetail);
  }

  void note() {
    const std::vector<std::int64_t>& records = word_.key.empty() ? context_.made : records_;
    if (records.empty()) return;
    const std::string asked = askedInShort(word_, message_);
    const std::string parting = before_.empty() || asked.empty() ? "" : " -> ";
    audit(context_.db, &context_.session, context_.now, word_.action, subjectOf(records),
          before_ + parting + asked, word_.code);
  }

 private:
  [[nodiscard]] std::string subjectOf(const std::vector<std::int64_t>& records) const {
    std::string text;
    for (const std::int64_t id : records) {
      if (!text.empty()) text += ' ';
      text += word_.kind == Audited::Booking ? confirmationNumber(id) : std::to_string(id);
    }
    return text;
  }

  const AuditWord& word_;
  Context& context_;
  const Message& message_;
  std::vector<std::pair<std::int64_t, Pending<std::string>>> found_;
  std::vector<std::int64_t> records_;
  std::string before_;
};

}  // namespace

Reply serve(const HandlerRow& handler, Context& context, const Message& message) {
  const Pending<bool> others = asksForOthersBooking(context, message);
  const AuditWord* word = findAuditWord(handler.code);
  if (word == nullptr) return others.get() ? Reply(rc::notFound) : handler.run(context, message);
  AuditedRun audited(*word, context, message);
  if (others.get()) return Reply(rc::notFound);
  audited.readBefore();
  BookingNews news(context, handler.code, message);
  Reply reply = handler.run(context, message);
  if (reply.rc() != 0 && reply.rc() != word->doneToo) return reply;
  audited.note();
  news.queue();
  return reply;
}

}  // namespace vantry::server
