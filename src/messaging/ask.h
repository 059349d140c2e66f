#pragma once

#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace vantry {

class Form;
class modGlobal;
class TagMessage;

/// A tag of a request with its value: a text, or a number in decimal.
struct AskTag {
  AskTag(std::string_view name, std::string_view text) : tag(name), value(text) {}
  AskTag(std::string_view name, int number) : tag(name), value(std::to_string(number)) {}
  std::string_view tag;
  std::string value;
};

/// A refusal that staff can cause, and the sentence for it. The reporter has none, or one that says less.
struct RefusalWords {
  int rc;
  std::string_view tag;  ///< of `codes::TagMissing`: whose value the server did not take; else empty
  std::string_view words;
  std::string_view code = {};  ///< of the only request that means it so
};

/// The sentence among these for the refusal of the request `code` that was received last; empty for none.
[[nodiscard]] std::string_view wordsOf(std::span<const RefusalWords> refusals, int rc, std::string_view code,
                                       const TagMessage& message);

/// Asks the server on behalf of one window or module, whose name a failure is reported with.
///
/// Each question makes all windows busy, adds its tags behind those that the caller has added to the message
/// before, sends, and makes the windows ready again. Then the reply can be read from the message. A lost
/// server ends the program within the question.
class Ask {
 public:
  using Tags = std::initializer_list<AskTag>;

  Ask(modGlobal& global, std::string_view name) : global_(global), name_(name) {}
  /// Asks for a window that leaves the others usable meanwhile.
  Ask(modGlobal& global, Form& onlyBusy);

  /// True when the reply can be read. A failure has been reported.
  [[nodiscard]] bool operator()(std::string_view code, Tags tags = {}) const;
  /// The same; `read` runs while the windows are still busy, as a list is filled.
  bool operator()(std::string_view code, Tags tags, const std::function<void()>& read) const;
  /// True when the reply can be read. A failure, whatever its code, was told by a warning with this sentence.
  [[nodiscard]] bool orWarn(std::string_view sentence, std::string_view code, Tags tags = {}) const;
  /// The return code, for a caller that has its own words for some. Nothing is reported.
  [[nodiscard]] int codeOf(std::string_view code, Tags tags = {}) const;
  /// The same; `read` runs after success while the windows are still busy.
  [[nodiscard]] int codeOf(std::string_view code, Tags tags, const std::function<void()>& read) const;
  /// True for success. Another return code is reported, as that of the request or command `module`.
  [[nodiscard]] bool succeeded(int rc, std::string_view module) const;
  /// The same; a refusal among these is told by a warning with its sentence.
  [[nodiscard]] bool succeeded(int rc, std::string_view module, std::span<const RefusalWords> refusals) const;

 private:
  int send(std::string_view code, Tags tags) const;
  void ready() const;

  modGlobal& global_;
  std::string name_;
  Form* onlyBusy_ = nullptr;
};

}  // namespace vantry
