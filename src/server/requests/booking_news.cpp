#include "server/requests/booking_news.h"

#include "server/mail/farewell.h"
#include "words/tags.h"

namespace vantry::server {

BookingNews::BookingNews(Context& context, std::string_view code, const Message& message)
    : context_(context), code_(code) {
  if (!context.mail.any()) return;
  bookingId_ = message.number(tags::BOOKID);
  patronId_ = message.flag(tags::ADBK) ? 0 : message.number(tags::PID);
  if (!context.mail.has(MailKind::Cancelled)) return;
  if (code == "DELBK") farewell_ = farewellToDeleted(context.db, bookingId_);
  if (code == "UPDBK") farewell_ = farewellToPresent(context.db, bookingId_);
}

void BookingNews::queue() {
  if (code_ == "NEWBK" && context_.mail.has(MailKind::Confirmed))
    queueNews(context_.db, MailKind::Confirmed, context_.made, context_.now);
  if (code_ == "UPDBK") queueChange();
  if (code_ == "CANBK" && context_.mail.has(MailKind::Cancelled))
    queueNews(context_.db, MailKind::Cancelled, std::vector{bookingId_}, context_.now);
  if (code_ == "DELBK" && farewell_) queueFarewell(context_.db, *farewell_, context_.now);
}

/// A booking that is somebody else's now is a new one for them, and canceled for whoever had it.
void BookingNews::queueChange() {
  const bool hasMoved = farewell_ && farewell_->patronId != patronId_;
  if (hasMoved) queueFarewell(context_.db, *farewell_, context_.now);
  const MailKind kind = hasMoved ? MailKind::Confirmed : MailKind::Changed;
  if (context_.mail.has(kind)) queueNews(context_.db, kind, std::vector{bookingId_}, context_.now);
}

}  // namespace vantry::server
