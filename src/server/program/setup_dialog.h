#pragma once

#include <functional>
#include <string>
#include <vector>

namespace vantry::server {

struct Question {
  std::string text = {};
  std::string suggestion = {};  ///< what an empty line stands for; may be empty itself
  std::string shown = {};       ///< of the suggestion; empty: all of it
  /// What is wrong with an answer, in a sentence; empty for a good one.
  std::function<std::string(const std::string&)> fault = {};
};

/// Gets the answers of a set-up: as they were given by options or in a file, else from whoever sits at the
/// terminal, else as they are suggested. All throw UserError when the input ends, or when an answer that was
/// given is no good one; a typed one is asked for again.
class SetupDialog {
 public:
  /// `takesSuggestions`: nothing is asked.
  explicit SetupDialog(bool takesSuggestions) : takesSuggestions_(takesSuggestions) {}

  /// `given` is empty when there is an answer to get. Without the blanks around it.
  [[nodiscard]] std::string answer(const Question& question, const std::string& given) const;
  /// Several, which are typed in one line and parted by commas.
  [[nodiscard]] std::vector<std::string> answers(const Question& question,
                                                 const std::vector<std::string>& given) const;
  /// A new password: the first line of the file where one is named, else as it is typed.
  [[nodiscard]] std::string password(const std::string& file) const;

 private:
  bool takesSuggestions_;
};

}  // namespace vantry::server
