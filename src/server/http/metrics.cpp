#include "server/http/metrics.h"

#include <utility>

#include <prometheus/counter.h>
#include <prometheus/gauge.h>
#include <prometheus/histogram.h>
#include <prometheus/registry.h>
#include <prometheus/text_serializer.h>

namespace vantry::server {

class Metrics::Impl {
 public:
  explicit Impl(std::function<Load()> load) : load_(std::move(load)) {}

  prometheus::Registry registry;
  prometheus::Family<prometheus::Counter>& replies =
      counters("vantry_requests_total", "Replies by request and result: a return code, or an HTTP status");
  prometheus::Family<prometheus::Counter>& storeErrors =
      counters("vantry_store_errors_total", "Requests that the database failed, by kind");
  prometheus::Counter& refusedTries = counters("vantry_logon_tries_refused_total",
                                               "Log-ons that were wrong or came too soon after wrong ones")
                                          .Add({});
  prometheus::Counter& turnedAway =
      counters("vantry_turned_away_total", "Requests that found the queue full").Add({});
  prometheus::Histogram& seconds =
      prometheus::BuildHistogram()
          .Name("vantry_request_seconds")
          .Help("From the first byte of a request to its reply")
          .Register(registry)
          .Add({}, prometheus::Histogram::BucketBoundaries{0.001, 0.0025, 0.005, 0.01, 0.025, 0.05, 0.1, 0.25,
                                                           0.5, 1, 2.5, 5, 10});

  [[nodiscard]] std::string text() {
    const Load load = load_();
    connections_.Set(static_cast<double>(load.connections));
    waitingRequests_.Set(static_cast<double>(load.waitingRequests));
    waitingWrites_.Set(static_cast<double>(load.waitingWrites));
    waitingLogons_.Set(static_cast<double>(load.waitingLogons));
    waitingForDirectory_.Set(static_cast<double>(load.waitingForDirectory));
    waitingMails_.Set(static_cast<double>(load.mail.queued));
    setCount(sentMails_, load.mail.sent);
    setCount(failedMails_, load.mail.failed);
    return prometheus::TextSerializer().Serialize(registry.Collect());
  }

 private:
  prometheus::Family<prometheus::Counter>& counters(const char* name, const char* help) {
    return prometheus::BuildCounter().Name(name).Help(help).Register(registry);
  }
  prometheus::Family<prometheus::Gauge>& gauges(const char* name, const char* help) {
    return prometheus::BuildGauge().Name(name).Help(help).Register(registry);
  }

  /// What is counted elsewhere: a counter knows no value but its own.
  static void setCount(prometheus::Counter& counter, std::int64_t count) {
    counter.Increment(static_cast<double>(count) - counter.Value());
  }

  std::function<Load()> load_;
  prometheus::Gauge& connections_ = gauges("vantry_connections", "Open connections").Add({});
  prometheus::Family<prometheus::Gauge>& waiting_ =
      gauges("vantry_waiting_requests", "Requests that wait for a worker, by the kind of worker");
  prometheus::Gauge& waitingRequests_ = waiting_.Add({{"workers", "requests"}});
  prometheus::Gauge& waitingWrites_ = waiting_.Add({{"workers", "writes"}});
  prometheus::Gauge& waitingLogons_ = waiting_.Add({{"workers", "logons"}});
  prometheus::Gauge& waitingForDirectory_ = waiting_.Add({{"workers", "directory"}});
  prometheus::Gauge& waitingMails_ = gauges("vantry_mails_queued", "Mails that wait in the outbox").Add({});
  prometheus::Family<prometheus::Counter>& mails_ =
      counters("vantry_mails_total", "Mails by what became of them: sent, or given up");
  prometheus::Counter& sentMails_ = mails_.Add({{"result", "sent"}});
  prometheus::Counter& failedMails_ = mails_.Add({{"result", "failed"}});
};

Metrics::Metrics(std::function<Load()> load) : impl_(std::make_unique<Impl>(std::move(load))) {}

Metrics::~Metrics() = default;

void Metrics::noteReply(std::string_view code, std::string_view result, std::chrono::duration<double> time) {
  impl_->replies.Add({{"code", std::string(code)}, {"result", std::string(result)}}).Increment();
  impl_->seconds.Observe(time.count());
}

void Metrics::noteStoreError(std::string_view kind) {
  impl_->storeErrors.Add({{"kind", std::string(kind)}}).Increment();
}

void Metrics::noteRefusedTry() {
  impl_->refusedTries.Increment();
}

void Metrics::noteTurnedAway() {
  impl_->turnedAway.Increment();
}

std::string Metrics::text() const {
  return impl_->text();
}

}  // namespace vantry::server
