#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "core/dialogs.h"
#include "core/progress.h"

namespace tessa {

/// What a run works on: files selected in one folder, in the order of its list.
struct TransferRequest {
  QString SourceFolder;   // Exact path.
  QStringList FileNames;  // As on disk.
  QString TargetFolder;   // Exact path; of no use when deleting.
  bool EmbedSounds = false;
};

/// How far a run is. Shown while `Shown`; written by the run alone.
struct TransferStatus {
  bool Shown = false;
  QString Title;  // "Copying Images..."
  int Percent = 0;
  QString InHand;  // The file in hand, in several lines.
};

/// What a run asks, tells and shows through.
struct TransferSurroundings {
  Dialogs& Questions;
  Progress& Watcher;  // Repaint() for each change of the status.
  TransferStatus& Status;
  /// Called when files left the source folder, before the status goes and the result is told: the
  /// place to read the folder anew.
  std::function<void()> SourceChanged = [] {};
  /// Asked before each file; true ends the run as "Cancel" does.
  std::function<bool()> StopAsked = [] { return false; };
};

// Each runs over the files, asks before anything is replaced, tells what failed and at the end how
// many were done, and returns that number. After a failure that the user passed over with "Yes",
// every further file of the run is told with a failure as well, and copied or moved files are not
// brought. Nothing is ever lost by it: see ImageTransfer.

int CopyImages(const TransferRequest& request, const TransferSurroundings& surroundings);
int TransferImages(const TransferRequest& request, const TransferSurroundings& surroundings);
int DeleteImages(const TransferRequest& request, const TransferSurroundings& surroundings);

/// Which of the three can be called.
struct TransferButtons {
  bool CopyAndTransfer = false;
  bool Delete = false;
};
TransferButtons CheckTransfer(bool anySelected, const QString& sourceFolder,
                              const QString& targetFolder);

}  // namespace tessa
