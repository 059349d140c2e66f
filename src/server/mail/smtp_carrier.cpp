#include "server/mail/smtp_carrier.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include <curl/curl.h>

#include "server/base/user_error.h"

namespace vantry::server {

namespace {

constexpr long secondsToConnect = 10;
constexpr long secondsInAll = 60;

struct EndHandle {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

struct Rest {
  std::string_view text;
};

std::size_t readMore(char* buffer, std::size_t size, std::size_t count, void* user) {
  Rest& rest = *static_cast<Rest*>(user);
  const std::size_t most = std::min(size * count, rest.text.size());
  std::memcpy(buffer, rest.text.data(), most);
  rest.text.remove_prefix(most);
  return most;
}

int lookWhetherToEnd(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return static_cast<const std::stop_token*>(user)->stop_requested() ? 1 : 0;
}

/// Words of the server are dropped, as they come back in the middle of a header or of a reply.
std::size_t ignoreReply(char*, std::size_t size, std::size_t count, void*) {
  return size * count;
}

bool isLoopback(std::string_view address) {
  const std::string_view rest = address.substr(address.find("//") + 2);
  const std::string_view host = rest.substr(0, rest.find_last_of(':'));
  const bool isNumber = host.find_first_not_of("0123456789.") == std::string_view::npos;
  return host == "localhost" || host == "[::1]" || (isNumber && host.starts_with("127."));
}

class SmtpCarrier : public MailCarrier {
 public:
  SmtpCarrier(const MailSettings& settings, const std::string& password) : handle_(curl_easy_init()) {
    if (!handle_) throw UserError("The mail library cannot be used.");
    set(CURLOPT_URL, settings.through.c_str());
    set(CURLOPT_PROTOCOLS_STR, "smtp,smtps");
    const bool plain = settings.through.starts_with("smtp:") && isLoopback(settings.through);
    set(CURLOPT_USE_SSL, static_cast<long>(plain ? CURLUSESSL_NONE : CURLUSESSL_ALL));
    if (!settings.authority.empty()) set(CURLOPT_CAINFO, settings.authority.c_str());
    if (!settings.user.empty()) set(CURLOPT_USERNAME, settings.user.c_str());
    if (!settings.user.empty()) set(CURLOPT_PASSWORD, password.c_str());
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_CONNECTTIMEOUT, secondsToConnect);
    set(CURLOPT_TIMEOUT, secondsInAll);
    set(CURLOPT_UPLOAD, 1L);
    set(CURLOPT_READFUNCTION, &readMore);
    set(CURLOPT_WRITEFUNCTION, &ignoreReply);
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_XFERINFOFUNCTION, &lookWhetherToEnd);
    set(CURLOPT_ERRORBUFFER, fault_.data());
  }

  Delivery carry(const Letter& letter, const std::stop_token& ending) override {
    Rest rest{letter.text};
    const std::unique_ptr<curl_slist, EndHandle> recipients(
        curl_slist_append(nullptr, ("<" + letter.to + ">").c_str()));
    const std::string from = "<" + letter.from + ">";
    set(CURLOPT_MAIL_FROM, from.c_str());
    set(CURLOPT_MAIL_RCPT, recipients.get());
    set(CURLOPT_READDATA, &rest);
    set(CURLOPT_XFERINFODATA, &ending);
    fault_.front() = '\0';
    return deliveryOf(curl_easy_perform(handle_.get()));
  }

 private:
  template <class Value>
  void set(CURLoption option, Value value) {
    if (curl_easy_setopt(handle_.get(), option, value) != CURLE_OK)
      throw UserError("The mail library does not know what it is told.");
  }

  /// What is said of the recipient or of the text holds for this letter alone, for good or for now. What the
  /// server says of the sender, of the log-on or of TLS holds for all letters, and somebody may mend it.
  Delivery deliveryOf(CURLcode code) {
    if (code == CURLE_OK) return {Delivery::Kind::Sent};
    const std::string_view told(fault_.data());
    std::string fault(told.empty() ? curl_easy_strerror(code) : told);
    long reply = 0;
    curl_easy_getinfo(handle_.get(), CURLINFO_RESPONSE_CODE, &reply);
    // A greeting that is none is told by the same code as a text that is not taken.
    const bool ofText = code == CURLE_WEIRD_SERVER_REPLY && !told.starts_with("Got unexpected");
    const bool ofLetter = ofText || (code == CURLE_SEND_ERROR && !told.starts_with("MAIL failed"));
    if (!ofLetter || reply < 400 || reply >= 600) return {Delivery::Kind::Failed, std::move(fault)};
    return {reply < 500 ? Delivery::Kind::PutOff : Delivery::Kind::Refused, std::move(fault)};
  }

  std::array<char, CURL_ERROR_SIZE> fault_{};
  std::unique_ptr<CURL, EndHandle> handle_;
};

}  // namespace

std::unique_ptr<MailCarrier> makeSmtpCarrier(const MailSettings& settings, const std::string& password) {
  static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (ready != CURLE_OK) throw UserError("The mail library cannot be used.");
  return std::make_unique<SmtpCarrier>(settings, password);
}

}  // namespace vantry::server
