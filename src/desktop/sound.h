#pragma once

#include <memory>
#include <string>

namespace vantry {

/// Plays wave files, one at a time. A file that is not there makes no sound.
class SoundPlayer {
 public:
  SoundPlayer();
  ~SoundPlayer();
  void play(const std::string& file);

 private:
  struct Player;
  std::unique_ptr<Player> player_;
};

}  // namespace vantry
