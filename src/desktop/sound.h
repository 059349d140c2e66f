#pragma once

#include <QString>
#include <memory>
#include <string>

namespace vantry {

/// Whether the file begins as a wave file does.
bool isWaveFile(const QString& file);

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
