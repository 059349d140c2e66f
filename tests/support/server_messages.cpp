#include "support/server_messages.h"

#include <algorithm>
#include <array>

#include "server/requests/handlers.h"
#include "words/pattern.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

struct Sample {
  std::string_view tag;
  std::string_view value;
  std::string_view code = {};  ///< of the only request that it is for
};

constexpr std::array samples{
    Sample{tags::SRCHTAG, "1", "CATFIND"},
    Sample{tags::ETIME_, "2026-03-03 11:00:00"},
    Sample{tags::PPID, "0"},
    Sample{tags::ODE, "0"},
    Sample{tags::OPU, "0"},
    Sample{tags::SDOW, "3"},
    Sample{tags::EDOW, "3"},
    Sample{tags::EPT, "3"},
    Sample{tags::HRS, "8"},
    Sample{tags::SRCHTAG, "17"},
    Sample{tags::SRCHFOR, "6"},
    Sample{tags::SRCHLOC, "5"},
    Sample{tags::SRCHOP, "AND"},
    Sample{tags::SRCHVAL, "P1?"},
    Sample{tags::BNO, "P100"},
    Sample{tags::PPBAR, "P100"},
    Sample{tags::PLN, "Bell"},
    Sample{tags::CN, "qe?"},
    Sample{tags::CNTY, "MLC#"},
    Sample{tags::MEDBAR, "M1"},
    Sample{tags::IB, "M1"},
    Sample{tags::EQBAR, "E1"},
    Sample{tags::ENO, "TV1"},
    Sample{tags::OI, "desk"},
};

std::string sampleOf(const TagPattern::Use& use, std::string_view code) {
  for (const Sample& each : samples) {
    if (each.tag == use.tag && (each.code.empty() || each.code == code)) return std::string(each.value);
  }
  switch (use.form) {
    case TagForm::Flag:
      return "N";
    case TagForm::Date:
      return "2026-03-03";
    case TagForm::Time:
      return "2026-03-03 10:00:00";
    default:
      return "1";
  }
}

bool carries(const std::vector<TagValue>& message, std::string_view tag) {
  return std::ranges::find(message, tag, &TagValue::tag) != message.end();
}

/// Fills `message`, trying every tag that fits next, until it is whole and carries the tag that is wanted.
class Completion {
 public:
  Completion(const RequestRow& row, std::string_view wanted) : row_(row), wanted_(wanted) {}

  bool complete() {
    if (pattern_.match(message).sound && carries(message, wanted_)) return true;
    for (const TagPattern::Use& use : pattern_.uses()) {
      if (carries(message, use.tag)) continue;
      message.push_back({std::string(use.tag), valueOf(use)});
      if (pattern_.match(message).reached == message.size() && complete()) return true;
      message.pop_back();
    }
    return false;
  }

  std::vector<TagValue> message;

 private:
  /// The type of a booking goes by its place.
  [[nodiscard]] std::string valueOf(const TagPattern::Use& use) const {
    if (use.tag != tags::BTID) return sampleOf(use, row_.code);
    return carries(message, tags::RID) || carries(message, tags::RTI) ? "1" : "3";
  }

  const RequestRow& row_;
  TagPattern pattern_{row_.sent};
  std::string_view wanted_;
};

}  // namespace

std::vector<TagValue> messageWith(const RequestRow& row, std::string_view tag) {
  Completion completion(row, tag);
  completion.complete();
  return completion.message;
}

std::vector<SampleMessage> sampleMessages() {
  std::vector<SampleMessage> messages;
  for (const RequestRow& row : requestTable()) {
    if (findHandler(row.code) == nullptr && row.code != "OPOV") continue;
    const TagPattern pattern(row.sent);
    if (pattern.uses().empty()) messages.push_back({&row, {}, {}});
    for (const TagPattern::Use& use : pattern.uses()) {
      messages.push_back({&row, use.tag, messageWith(row, use.tag)});
    }
  }
  return messages;
}

}  // namespace vantry::server
