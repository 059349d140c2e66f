#include "desktop/sound.h"

#include <QFile>
#include <QFileInfo>
#include <QSoundEffect>
#include <QUrl>

#include "desktop/qtext.h"

namespace vantry {

struct SoundPlayer::Player {
  QSoundEffect effect;
};

bool isWaveFile(const QString& file) {
  QFile wave(file);
  if (!wave.open(QIODevice::ReadOnly)) return false;
  const QByteArray head = wave.read(12);
  return head.startsWith("RIFF") && head.endsWith("WAVE");
}

SoundPlayer::SoundPlayer() = default;
SoundPlayer::~SoundPlayer() = default;

void SoundPlayer::play(const std::string& file) {
  const QString path = qt(file);
  if (!QFileInfo(path).isFile()) return;
  if (!player_) player_ = std::make_unique<Player>();
  player_->effect.setSource(QUrl::fromLocalFile(path));
  player_->effect.play();
}

}  // namespace vantry
