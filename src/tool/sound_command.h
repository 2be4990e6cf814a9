#pragma once

#include <QJsonObject>
#include <string>
#include <vector>

#include "open/session.h"

namespace tessa {

/// The arguments of the tool's sound command.
struct SoundCall {
  std::vector<std::string> Images;
  std::string Out;
  std::string Folder;
  bool Force = false;
};

/// Writes the sound notes of images as wave files; returns the exit status.
int RunSound(const SoundCall& call);

/// The arguments of the tool's embed command.
struct EmbedCall {
  std::string Image;
  std::string Sound;  // Empty: the file that belongs beside the image.
  std::string Out;
  bool InPlace = false;
  bool Force = false;
};

/// Puts a sound note into a SIT image; returns the exit status.
int RunEmbed(const EmbedCall& call);

/// What the info command says of the open image's note.
struct SoundReport {
  QJsonObject Fields;  // SoundKind, SoundSeconds and SoundRate (hertz).
  QString Words;       // "2.5 s at 8000 Hz, inside the file"; empty when there is no note.
};

/// Looks the note up. What is wrong with it goes into the session's Faults.
SoundReport ReportSound(Session& session);

}  // namespace tessa
