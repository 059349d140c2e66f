#include "options/sound_page.h"

#include "frame/app.h"
#include "options/wanted_file.h"
#include "platform/text.h"
#include "platform/wiring.h"

namespace vantry {

namespace {

struct SoundRoot {
  const char* key;
  const char* caption;
};
constexpr SoundRoot kRoots[] = {{"Listbar", "Listbar Events"}, {"Monitor", "Schedule Monitor Events"}};

/// An event and its place in the list of files. The other places have no event.
struct SoundEvent {
  const char* root;
  const char* caption;
  int place;
};
constexpr SoundEvent kEvents[] = {
    {"Listbar", "Group Select", 0},
    {"Listbar", "Item Select", 1},
    {"Monitor", "Conflict Resolution and Warning", 4},
    {"Monitor", "Delivery/Cleanup Notification", 5},
    {"Monitor", "Pickup Slips Notification", 6},
    {"Monitor", "Room Schedule Notification", 7},
    {"Monitor", "Library Media Room Schedule Notification", 8},
};

// Pictures of the tree, counted from 1.
constexpr int kRootPicture = 1;
constexpr int kSilentPicture = 2;
constexpr int kFilledPicture = 3;

std::string keyOf(int place) {
  return "Sound" + std::to_string(place);
}

}  // namespace

SoundPage::SoundPage(App& app, Frame& frame, Event changed)
    : gtvEvents(frame, "gtvEvents"),
      lblSoundFile(frame, "lblSoundFile", "Sound &file:"),
      txtSoundFile(frame, "txtSoundFile"),
      cmdBrowse(frame, "cmdBrowse(1)", "&Browse..."),
      cmdPlay(frame, "cmdPlay", "&Play"),
      app_(app),
      changed_(std::move(changed)) {
  gtvEvents.AccessibleName = "Events";
  gtvEvents.Pictures = {"folder-open", "silent", "sound"};
  on(gtvEvents.Click, this, &SoundPage::gtvEvents_Click);
  on(txtSoundFile.Change, this, &SoundPage::txtSoundFile_Change);
  on(cmdPlay.Click, this, &SoundPage::cmdPlay_Click);
  cmdBrowse.Click = [this] {
    if (fileWanted) fileWanted(txtSoundFile);
  };
  frame.Layout = Column{gtvEvents, Row{lblSoundFile, LayoutNode(txtSoundFile).share(1), cmdBrowse, cmdPlay}};
}

void SoundPage::addTo(OptionPages& pages) {
  for (const PreferenceRow& row : preferenceTable()) {
    if (!row.key.starts_with("Sound")) continue;
    std::string& file = files_.at(static_cast<std::size_t>(intOf(row.key.substr(5))));
    pages.add({row.key, [&file](const std::string& text) { file = text; },
               [&file] { return std::optional(exists(file) ? file : std::string()); }});
  }
}

void SoundPage::load() {
  const std::string selected = gtvEvents.SelectedKey;
  gtvEvents.Clear();
  for (const SoundRoot& root : kRoots) {
    if (TreeNode* node = gtvEvents.Add({}, root.key, root.caption, kRootPicture)) node->expanded = true;
  }
  for (const SoundEvent& event : kEvents) {
    static_cast<void>(gtvEvents.Add(event.root, keyOf(event.place), event.caption));
    showPicture(event.place);
  }
  gtvEvents.SelectedKey = selected;
  txtSoundFile.Text = selectedPlace() < 0 ? std::string() : files_[static_cast<std::size_t>(selectedPlace())];
  setEnabled(selectedPlace() >= 0, txtSoundFile, cmdBrowse);
  cmdPlay.Enabled = !txtSoundFile.Text.get().empty();
}

void SoundPage::showPicture(int place) {
  TreeNode* node = gtvEvents.find(keyOf(place));
  if (!node) return;
  node->image = files_[static_cast<std::size_t>(place)].empty() ? kSilentPicture : kFilledPicture;
  gtvEvents.changed();
}

int SoundPage::selectedPlace() const {
  for (const SoundEvent& event : kEvents) {
    if (keyOf(event.place) == gtvEvents.SelectedKey.get()) return event.place;
  }
  return -1;
}

void SoundPage::gtvEvents_Click() {
  const int place = selectedPlace();
  setEnabled(place >= 0, txtSoundFile, cmdBrowse);
  txtSoundFile.Text = place < 0 ? std::string() : files_[static_cast<std::size_t>(place)];
  cmdPlay.Enabled = !txtSoundFile.Text.get().empty();
  play();
}

/// The text also changes when another event is selected; then nothing is new.
void SoundPage::txtSoundFile_Change() {
  const int place = selectedPlace();
  const std::string file(trim(txtSoundFile.Text.get()));
  if (place < 0 || files_[static_cast<std::size_t>(place)] == file) return;
  files_[static_cast<std::size_t>(place)] = file;
  showPicture(place);
  cmdPlay.Enabled = !file.empty();
  raise(changed_);
}

void SoundPage::play() {
  const std::string file(trim(txtSoundFile.Text.get()));
  if (!file.empty()) app_.desktop.playSound(file);
}

/// Who asks for a sound and hears nothing is told why.
void SoundPage::cmdPlay_Click() {
  const std::string file(trim(txtSoundFile.Text.get()));
  if (isUsable(app_.desktop, file, kWaves)) app_.desktop.playSound(file);
}

}  // namespace vantry
