#include "words/pattern.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>

namespace vantry {
namespace {

bool isTagLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}
bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

TagForm formInDictionary(std::string_view tag) {
  const TagRow* row = findTag(tag);
  return row ? row->form : TagForm::Name;
}

}  // namespace

/// Reads a pattern by recursive descent and writes the program of a TagPattern.
class PatternReader {
 public:
  using Place = TagPattern::Place;
  using Program = TagPattern::Program;

  PatternReader(std::string_view text, std::vector<TagPattern::Use>& uses) : text_(text), uses_(uses) {}

  Program read() {
    Program program = readSequence();
    if (at_ < text_.size()) fail("a ')' or '|' outside a group");
    return program;
  }

 private:
  Program readSequence() {
    Program sequence;
    while (!atEnd() && text_[at_] != ')' && text_[at_] != '|') append(sequence, readItem());
    return sequence;
  }

  Program readItem() {
    Program item = text_[at_] == '(' ? readGroup() : readTag();
    if (at_ >= text_.size()) return item;
    switch (text_[at_]) {
      case '?':
        ++at_;
        return optional(std::move(item));
      case '*':
        ++at_;
        return repeated(std::move(item));
      case '+':
        ++at_;
        return repeatedOnce(std::move(item));
      default:
        return item;
    }
  }

  Program readGroup() {
    ++at_;
    Program group = readSequence();
    if (!atEnd() && text_[at_] == '|') {
      // The rest of the group is read as a group of its own, which makes the alternatives nest to the right.
      return alternatives(std::move(group), readGroup());
    }
    if (atEnd()) fail("a '(' that nothing closes");
    ++at_;
    return group;
  }

  Program readTag() {
    const std::string_view tag = readWord(isTagLetter);
    if (tag.empty()) fail("a sign that is no tag");
    std::optional<TagForm> form;
    if (at_ < text_.size() && text_[at_] == ':') {
      ++at_;
      form = formNamed(readWord(isLetter));
      if (!form) fail("a form that does not exist");
    }
    return {Place{.takes = useOf(tag, form)}};
  }

  std::ptrdiff_t useOf(std::string_view tag, std::optional<TagForm> form) {
    auto use = std::ranges::find(uses_, tag, &TagPattern::Use::tag);
    if (use == uses_.end()) use = uses_.insert(use, {tag, form.value_or(formInDictionary(tag))});
    if (form) use->form = *form;
    return use - uses_.begin();
  }

  template <class Test>
  std::string_view readWord(Test belongs) {
    const std::size_t start = at_;
    while (at_ < text_.size() && belongs(text_[at_])) ++at_;
    return text_.substr(start, at_ - start);
  }

  bool atEnd() {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
    return at_ == text_.size();
  }

  [[noreturn]] void fail(std::string_view what) const {
    throw std::invalid_argument(std::string(what) + " at " + std::to_string(at_) +
                                " in the pattern: " + std::string(text_));
  }

  static void append(Program& program, const Program& more) {
    program.insert(program.end(), more.begin(), more.end());
  }

  static std::ptrdiff_t lengthOf(const Program& program) {
    return static_cast<std::ptrdiff_t>(program.size());
  }

  static Place fork(std::ptrdiff_t first, std::ptrdiff_t second) {
    return {.first = first, .second = second};
  }

  static Place jump(std::ptrdiff_t way) { return fork(way, way); }

  static Program optional(Program item) {
    item.insert(item.begin(), fork(1, lengthOf(item) + 1));
    return item;
  }

  static Program repeated(Program item) {
    const auto length = lengthOf(item);
    item.insert(item.begin(), fork(1, length + 2));
    item.push_back(jump(-length - 1));
    return item;
  }

  static Program repeatedOnce(Program item) {
    item.push_back(fork(-lengthOf(item), 1));
    return item;
  }

  static Program alternatives(Program one, const Program& other) {
    one.insert(one.begin(), fork(lengthOf(one) + 2, 1));
    one.push_back(jump(lengthOf(other) + 1));
    append(one, other);
    return one;
  }

  std::string_view text_;
  std::vector<TagPattern::Use>& uses_;
  std::size_t at_ = 0;
};

/// The places of a program that may take the next tag of the message.
class TagPattern::Front {
 public:
  explicit Front(const Program& program) : program_(&program), seenIn_(program.size() + 1, 0) {}

  void clear() {
    places_.clear();
    ++round_;
  }

  /// Adds the place, or all that it forks to, each once per round.
  void add(std::size_t place) {
    pending_.assign(1, place);
    while (!pending_.empty()) {
      const std::size_t next = pending_.back();
      pending_.pop_back();
      ++steps_;
      if (seenIn_[next] == round_) continue;
      seenIn_[next] = round_;
      if (next == program_->size() || (*program_)[next].takes != kFork) {
        places_.push_back(next);
        continue;
      }
      pending_.push_back(next + static_cast<std::size_t>((*program_)[next].second));
      pending_.push_back(next + static_cast<std::size_t>((*program_)[next].first));
    }
  }

  [[nodiscard]] const std::vector<std::size_t>& places() const { return places_; }
  [[nodiscard]] bool isComplete() const { return seenIn_[program_->size()] == round_; }
  [[nodiscard]] std::size_t steps() const { return steps_; }

 private:
  const Program* program_;
  std::vector<std::size_t> seenIn_;  ///< the round in which a place was added last
  std::vector<std::size_t> places_;
  std::vector<std::size_t> pending_;
  std::size_t round_ = 1;
  std::size_t steps_ = 0;
};

TagPattern::TagPattern(std::string_view text) {
  program_ = PatternReader(text, uses_).read();
}

TagPattern::Match TagPattern::match(std::span<const TagValue> tags) const {
  Front now(program_);
  Front next(program_);
  now.add(0);
  std::size_t entered = 0;  // the place behind the last tag that fitted
  Match match;
  for (const TagValue& tag : tags) {
    const Use* use = find(tag.tag);
    const std::ptrdiff_t index = use ? use - uses_.data() : kFork;
    next.clear();
    for (const std::size_t place : now.places()) {
      if (!use || place == program_.size() || program_[place].takes != index) continue;
      if (next.places().empty()) entered = place + 1;
      next.add(place + 1);
    }
    if (next.places().empty()) break;
    std::swap(now, next);
    ++match.reached;
  }
  match.sound = match.reached == tags.size() && now.isComplete();
  if (!match.sound) match.required = requiredFrom(entered);
  match.steps = now.steps() + next.steps();
  return match;
}

const TagPattern::Use* TagPattern::find(std::string_view tag) const {
  const auto use = std::ranges::find(uses_, tag, &Use::tag);
  return use == uses_.end() ? nullptr : &*use;
}

std::string_view TagPattern::requiredFrom(std::size_t place) const {
  while (place < program_.size() && program_[place].takes == kFork) {
    place += static_cast<std::size_t>(program_[place].second);
  }
  return place == program_.size() ? std::string_view{}
                                  : uses_[static_cast<std::size_t>(program_[place].takes)].tag;
}

}  // namespace vantry
