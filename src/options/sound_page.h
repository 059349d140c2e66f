#pragma once

#include <array>
#include <functional>
#include <string>

#include "options/option_pages.h"
#include "platform/tree.h"

namespace vantry {

class App;

/// The page of the sounds: the program's events in a tree, and the wave file of the selected one.
class SoundPage {
 public:
  /// `changed` runs whenever an event gets another file.
  SoundPage(App& app, Frame& frame, Event changed);
  SoundPage(const SoundPage&) = delete;

  /// Adds the ten places of the list to the fields of the options. A file that no longer exists has no place.
  void addTo(OptionPages& pages);
  void load();
  void gtvEvents_Click();
  void cmdPlay_Click();
  /// Asked for a file for the selected event.
  std::function<void(TextBox&)> fileWanted;

  Tree gtvEvents;
  Label lblSoundFile;
  TextBox txtSoundFile;
  Button cmdBrowse;
  Button cmdPlay;

 private:
  void txtSoundFile_Change();
  void play();
  void showPicture(int place);
  /// The place of the selected event in the list; -1 where none is selected.
  int selectedPlace() const;

  App& app_;
  Event changed_;
  std::array<std::string, kSounds> files_;
};

}  // namespace vantry
