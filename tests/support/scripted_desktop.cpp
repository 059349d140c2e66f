#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include "platform/controls.h"

namespace vantry::test {

static std::string inWords(Box::Kind kind, std::string_view text, std::string_view caption) {
  static constexpr const char* kinds[] = {"question", "information", "warning", "critical", "plain"};
  std::string words = std::string(kinds[static_cast<int>(kind)]) + " box \"" + std::string(text) + '"';
  if (!caption.empty()) words += " captioned \"" + std::string(caption) + '"';
  return words;
}

ScriptedDesktop::~ScriptedDesktop() {
  checkAllCame();
}

void ScriptedDesktop::checkAllCame() {
  for (const auto& announcement : announced_) ADD_FAILURE() << "never came: " << announcement.what;
  announced_.clear();
}

std::optional<ScriptedDesktop::Announcement> ScriptedDesktop::take(const std::string& what) {
  if (announced_.empty() || announced_.front().what != what) {
    ADD_FAILURE() << "came: " << what << "\nexpected: "
                  << (announced_.empty() ? std::string("nothing") : announced_.front().what);
    return std::nullopt;
  }
  Announcement announcement = std::move(announced_.front());
  announced_.pop_front();
  return announcement;
}

void ScriptedDesktop::expectBox(Box::Kind kind, std::string text, int answer, std::string caption) {
  announced_.push_back({inWords(kind, text, caption), answer, {}, {}, {}});
}

void ScriptedDesktop::expectModal(std::string name, std::function<void(Form&)> play) {
  announced_.push_back({"modal window " + name, 0, {}, {}, std::move(play)});
}

void ScriptedDesktop::expectPopup(std::string menu, std::string entry) {
  announced_.push_back({"popup menu " + menu, 0, std::move(entry), {}, {}});
}

void ScriptedDesktop::expectInput(std::string prompt, std::optional<std::string> answer) {
  announced_.push_back({"input box \"" + prompt + '"', 0, {}, std::move(answer), {}});
}

void ScriptedDesktop::expectFile(std::string filter, std::optional<std::string> answer) {
  announced_.push_back({"file chooser " + filter, 0, {}, std::move(answer), {}});
}

void ScriptedDesktop::expectColour(Colour initial, std::optional<Colour> answer) {
  auto text = answer ? std::optional(std::to_string(*answer)) : std::nullopt;
  announced_.push_back({"colour chooser " + std::to_string(initial), 0, {}, std::move(text), {}});
}

std::optional<std::string> ScriptedDesktop::chooseFile(std::string_view, std::string_view filter,
                                                       std::string_view) {
  const auto announcement = take("file chooser " + std::string(filter));
  return announcement ? announcement->input : std::nullopt;
}

std::optional<Colour> ScriptedDesktop::chooseColour(Colour initial) {
  const auto announcement = take("colour chooser " + std::to_string(initial));
  if (!announcement || !announcement->input) return std::nullopt;
  return static_cast<Colour>(std::stoul(*announcement->input));
}

int ScriptedDesktop::messageBox(const Box& box) {
  lastBox = box;
  if (box.buttons == std::vector<std::string>{"&Yes", "&No"}) {
    EXPECT_EQ(box.closing, Box::kNone) << "Escape would answer: " << box.text;
  }
  const auto announcement = take(inWords(box.kind, box.text, box.caption));
  if (onBox) onBox();
  // A box that nobody announced is closed, which is its last button.
  return announcement ? announcement->answer : static_cast<int>(box.buttons.size()) - 1;
}

std::optional<std::string> ScriptedDesktop::inputBox(std::string_view prompt, std::string_view,
                                                     std::string_view) {
  const auto announcement = take("input box \"" + std::string(prompt) + '"');
  return announcement ? announcement->input : std::nullopt;
}

void ScriptedDesktop::runModal(Form& form) {
  form.Form_Activate();
  const auto announcement = take("modal window " + form.Name());
  if (announcement) announcement->play(form);
  if (!form.isShown()) return;
  if (announcement) ADD_FAILURE() << "modal window " << form.Name() << " was left open";
  form.Hide();
}

static MenuItem* entryOf(const MenuItem& menu, const std::string& name) {
  for (MenuItem* item : menu.Items()) {
    if (item->Name() == name) return item;
    if (MenuItem* inner = entryOf(*item, name)) return inner;
  }
  return nullptr;
}

void ScriptedDesktop::popupMenu(MenuItem& menu, const Control*) {
  const auto announcement = take("popup menu " + menu.Name());
  if (!announcement || announcement->entry.empty()) return;
  MenuItem* entry = entryOf(menu, announcement->entry);
  ASSERT_NE(entry, nullptr) << menu.Name() << " has no entry " << announcement->entry;
  EXPECT_TRUE(entry->usable()) << announcement->entry << " cannot be chosen";
  entry->choose();
}

void ScriptedDesktop::show(Form& form) {
  form.Form_Activate();
}

void ScriptedDesktop::activate(Form& form) {
  form.Form_Activate();
}

void ScriptedDesktop::repaint(Form& form, bool) {
  if (onRepaint) onRepaint(form);
}

}  // namespace vantry::test
