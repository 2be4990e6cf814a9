#pragma once

#include <CLI/App.hpp>
#include <QJsonObject>
#include <optional>
#include <string>
#include <vector>

#include "open/session.h"

namespace tessa {

/// The tool's commands for sound notes: "sound" and "embed".
class SoundCommands {
 public:
  explicit SoundCommands(CLI::App& tool);
  SoundCommands(const SoundCommands&) = delete;
  SoundCommands& operator=(const SoundCommands&) = delete;

  /// Runs whichever of them was called and returns the exit status; nothing when none was.
  std::optional<int> Run() const;

 private:
  int WriteNotes() const;
  int Embed() const;

  CLI::App* soundCommand_;
  CLI::App* embedCommand_;
  std::vector<std::string> images_;
  std::string image_;
  std::string out_;
  std::string folder_;
  std::string sound_;
  bool inPlace_ = false;
  bool force_ = false;
};

/// What the info command says of the open image's note.
struct SoundReport {
  QJsonObject Fields;  // SoundKind, SoundSeconds and SoundRate (hertz).
  QString Words;       // "2.5 s at 8000 Hz, inside the file"; empty when there is no note.
};

/// Looks the note up. What is wrong with it goes into the session's Faults.
SoundReport ReportSound(Session& session);

}  // namespace tessa
