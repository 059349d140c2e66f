#include "server/setup/rules_file_value.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace vantry::server {

namespace {

constexpr std::size_t mostTold = 100;
constexpr std::size_t deepest = 20;              // far below what a file of rules needs
constexpr std::int64_t largest = 1'000'000'000;  // leaves room for reckoning in seconds

constexpr std::string_view mustBeText = "must be a text in quotes.";

std::string memberPlace(std::string_view place, std::string_view name) {
  return std::string(place) + (place.empty() ? "" : ".") + std::string(name);
}

std::string elementPlace(std::string_view place, std::size_t number) {
  return std::string(place) + "[" + std::to_string(number) + "]";
}

/// Builds the value while the text is read.
class Builder : public nlohmann::json_sax<nlohmann::json> {
 public:
  Builder(std::string_view json, FileFaults& faults) : json_(json), faults_(faults) {}

  bool null() override { return put({}); }
  bool boolean(bool value) override { return put({.kind = FileValue::Kind::Flag, .flag = value}); }
  bool number_integer(number_integer_t value) override { return putNumber(value); }
  bool number_unsigned(number_unsigned_t value) override {
    return putNumber(static_cast<std::int64_t>(std::min<std::uint64_t>(value, largest + 1)));
  }
  bool number_float(number_float_t, const string_t&) override { return put({}); }
  bool binary(binary_t&) override { return put({}); }
  bool string(string_t& value) override { return put({.kind = FileValue::Kind::Text, .text = value}); }
  bool start_object(std::size_t) override { return open(FileValue::Kind::Object); }
  bool start_array(std::size_t) override { return open(FileValue::Kind::List); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }

  bool key(string_t& name) override {
    Open& object = open_.back();
    object.place = memberPlace(object.ownPlace, name);
    const auto& names = object.value.names;
    object.doubled = std::find(names.begin(), names.end(), name) != names.end();
    if (object.doubled) {
      faults_.add(object.place, "stands twice in one object.");
    } else {
      object.value.names.push_back(name);
    }
    return true;
  }

  bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception&) override {
    const std::string_view before = json_.substr(0, position);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    faults_.add("line " + std::to_string(line), "this is no JSON text, or one that is cut off.");
    return false;
  }

  FileValue root;

 private:
  struct Open {
    FileValue value;
    std::string ownPlace;
    std::string place = {};  ///< of the member that is read
    bool doubled = false;
  };

  [[nodiscard]] std::string nextPlace() const {
    if (open_.empty()) return {};
    const Open& around = open_.back();
    return around.value.kind == FileValue::Kind::Object
               ? around.place
               : elementPlace(around.ownPlace, around.value.parts.size());
  }

  bool open(FileValue::Kind kind) {
    const std::string place = nextPlace();
    if (open_.size() == deepest) {
      faults_.add(place, "nothing here stands so deep inside other things.");
      return false;
    }
    open_.push_back({.value = {.kind = kind}, .ownPlace = place});
    return true;
  }

  bool close() {
    FileValue value = std::move(open_.back().value);
    open_.pop_back();
    return put(std::move(value));
  }

  bool putNumber(std::int64_t value) { return put({.kind = FileValue::Kind::Number, .number = value}); }

  bool put(FileValue value) {
    if (open_.empty()) {
      root = std::move(value);
    } else if (!open_.back().doubled) {
      open_.back().value.parts.push_back(std::move(value));
    }
    return true;
  }

  std::string_view json_;
  FileFaults& faults_;
  std::vector<Open> open_;
};

std::string listed(std::span<const std::string_view> words) {
  std::string text;
  for (const std::string_view each : words)
    text.append(text.empty() ? "\"" : ", \"").append(each).append("\"");
  return text;
}

}  // namespace

void FileFaults::add(std::string_view place, std::string_view sentence) {
  ++count_;
  if (told_.size() == mostTold) return;
  told_.push_back((place.empty() ? "the file" : std::string(place)) + ": " + std::string(sentence));
}

FileValue readFileValue(std::string_view json, FileFaults& faults) {
  Builder builder(json, faults);
  if (!nlohmann::json::sax_parse(json, &builder)) return {.kind = FileValue::Kind::Object};
  return std::move(builder.root);
}

bool FileNode::is(FileValue::Kind kind, std::string_view otherwise) const {
  if (value_ == nullptr) {
    refuse("is missing.");
    return false;
  }
  if (value_->kind != kind && value_->kind != FileValue::Kind::Told) refuse(otherwise);
  return value_->kind == kind;
}

void FileNode::expectMembers(const std::vector<std::string_view>& known) const {
  if (!is(FileValue::Kind::Object, "must be an object, {...}.")) return;
  for (const std::string& name : value_->names) {
    if (std::find(known.begin(), known.end(), name) != known.end()) continue;
    faults_->add(memberPlace(place_, name), "there is no such member here, but " + listed(known) + ".");
  }
}

FileNode FileNode::member(std::string_view name) const {
  static const FileValue told{.kind = FileValue::Kind::Told};
  const FileValue* found = nullptr;
  if (value_ != nullptr && value_->kind != FileValue::Kind::Object) {
    found = &told;
  } else if (value_ != nullptr) {
    const auto at = std::find(value_->names.begin(), value_->names.end(), name);
    const auto place = static_cast<std::size_t>(at - value_->names.begin());
    if (at != value_->names.end()) found = &value_->parts[place];
  }
  return {found, memberPlace(place_, name), *faults_};
}

std::vector<FileNode> FileNode::elements() const {
  std::vector<FileNode> nodes;
  if (!isGiven() || !is(FileValue::Kind::List, "must be a list, [...].")) return nodes;
  for (const FileValue& part : value_->parts)
    nodes.emplace_back(&part, elementPlace(place_, nodes.size()), *faults_);
  return nodes;
}

std::string FileNode::name() const {
  constexpr std::string_view blanks = " \t\r\n";
  if (!is(FileValue::Kind::Text, mustBeText)) return {};
  const std::string& read = value_->text;
  if (read.find_first_not_of(blanks) == std::string::npos) {
    refuse("a name must not be empty.");
    return {};
  }
  if (blanks.find(read.front()) != std::string_view::npos ||
      blanks.find(read.back()) != std::string_view::npos) {
    refuse("a name has no blanks around it.");
  }
  return read;
}

bool FileNode::flagOr(bool otherwise) const {
  if (!isGiven() || !is(FileValue::Kind::Flag, "must be true or false.")) return otherwise;
  return value_->flag;
}

std::int64_t FileNode::number(std::string_view sentence) const {
  if (!is(FileValue::Kind::Number, sentence)) return 0;
  if (value_->number >= 0 && value_->number <= largest) return value_->number;
  refuse(sentence);
  return 0;
}

std::int64_t FileNode::numberOr(std::int64_t otherwise) const {
  return isGiven() ? number() : otherwise;
}

int FileNode::word(std::span<const Word> words) const {
  std::vector<std::string_view> known;
  for (const Word& each : words) known.push_back(each.word);
  const std::string sentence = "must be one of " + listed(known) + ".";
  if (!is(FileValue::Kind::Text, sentence)) return words.front().value;
  const std::optional<int> value = valueOf(words, value_->text);
  if (!value) refuse(sentence);
  return value.value_or(words.front().value);
}

bool FileNode::isText(std::string_view text) const {
  return value_ != nullptr && value_->kind == FileValue::Kind::Text && value_->text == text;
}

}  // namespace vantry::server
