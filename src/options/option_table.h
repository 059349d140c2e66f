#pragma once

#include <span>
#include <string_view>

namespace vantry {

/// How a preference, or a colour's pair of them, is edited.
enum class OptionKind {
  Check,    ///< a box to tick
  Option,   ///< one of several in its frame, each with a key of its own
  Choices,  ///< an array of options that share one key
  Number,
  List,          ///< the place of an entry in a list
  RowColour,     ///< a button and a sample, drawn as a row of the lists; the keys end in "B" and "F"
  GroundColour,  ///< the same, drawn as the ground of a heading
  Picture        ///< the path of an image, with a button to choose one
};

/// One row of a page: the control, and the key of the preference that it edits.
struct OptionRow {
  OptionKind kind;
  std::string_view control;
  std::string_view caption;  ///< of the control or of its label; those of choices are joined by "|"
  std::string_view key;
  std::string_view values = {};  ///< of choices: what is stored, joined by "|"; a choice without is a heading
  bool across = false;           ///< choices in one row
  std::string_view entries = {};  ///< of a list, joined by "|"; empty where the window fills it
  std::string_view label = {};    ///< where it is not "lbl" and the control's own name
  std::string_view unit = {};     ///< behind a number
  std::string_view unitLabel = {};
  int least = 0;
  int most = 0;
};

/// Rows within a frame; without a name they are on the page itself.
struct OptionGroup {
  std::string_view frame;
  std::string_view caption;
  std::span<const OptionRow> rows;
};

struct OptionPage {
  std::string_view tab;
  std::string_view tip;
  std::span<const OptionGroup> groups;
};

/// The pages in the order of their tabs. The last one, of the sounds, has no rows.
[[nodiscard]] std::span<const OptionPage> optionPages();

/// Places of pages to which the window adds controls of its own.
inline constexpr int kMonitorPage = 6;
inline constexpr int kSoundPage = 8;

}  // namespace vantry
