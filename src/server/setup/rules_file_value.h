#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "server/setup/file_faults.h"
#include "server/setup/rules_file_words.h"

namespace vantry::server {

/// A value out of a JSON text. Members of an object are in the order of the text, each name once.
struct FileValue {
  enum class Kind {
    Other,
    Flag,
    Number,  ///< a whole one
    Text,
    List,
    Object,
    Told,  ///< inside something that was reported as a fault, and not reported again
  };
  Kind kind = Kind::Other;
  bool flag = false;
  std::int64_t number = 0;
  std::string text = {};
  std::vector<std::string> names = {};  ///< of an object's members
  std::vector<FileValue> parts = {};    ///< a list's elements, an object's members
};

/// Reads a JSON text. A text that is none is told with its line, a repeated member with its place.
[[nodiscard]] FileValue readFileValue(std::string_view json, FileFaults& faults);

/// A value with its place in the file, or the place where one is missing. What is asked of it and is not
/// there is reported as a fault and answered with an empty value, so that reading continues.
class FileNode {
 public:
  static constexpr std::string_view wholeNumber = "must be a whole number from 0 to 1000000000.";

  FileNode(const FileValue* value, std::string place, FileFaults& faults)
      : value_(value), place_(std::move(place)), faults_(&faults) {}

  [[nodiscard]] bool isGiven() const { return value_ != nullptr; }
  void refuse(std::string_view sentence) const { faults_->add(place_, sentence); }

  /// Tells when it is no object, and the members that are not among these.
  void expectMembers(const std::vector<std::string_view>& known) const;
  [[nodiscard]] FileNode member(std::string_view name) const;
  /// Of a list; none when it is missing.
  [[nodiscard]] std::vector<FileNode> elements() const;

  /// A name as it is kept: not empty, no blanks around it.
  [[nodiscard]] std::string name() const;
  [[nodiscard]] bool flagOr(bool otherwise) const;
  /// A whole number from 0 on; the sentence is told for anything else.
  [[nodiscard]] std::int64_t number(std::string_view sentence = wholeNumber) const;
  [[nodiscard]] std::int64_t numberOr(std::int64_t otherwise) const;
  /// What `read` makes of its text; the sentence is told when it makes nothing of it.
  template <class Value>
  [[nodiscard]] Value textAs(std::optional<Value> (*read)(std::string_view),
                             std::string_view sentence) const {
    if (!is(FileValue::Kind::Text, sentence)) return {};
    const std::optional<Value> value = read(value_->text);
    if (!value) refuse(sentence);
    return value.value_or(Value{});
  }
  /// The value of one of the words.
  [[nodiscard]] int word(std::span<const Word> words) const;
  [[nodiscard]] bool isText(std::string_view text) const;

 private:
  [[nodiscard]] bool is(FileValue::Kind kind, std::string_view otherwise) const;

  const FileValue* value_;
  std::string place_;
  FileFaults* faults_;
};

}  // namespace vantry::server
