#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "formats/colour.h"

namespace tessa {

/// What the download window shows besides the options. The engine alone writes it, and the window
/// reads it after each call and whenever it is told to.
struct DownloadState {
  static constexpr Colour kBlack = 0;
  static constexpr Colour kDarkRed = 192;

  struct Folder {
    QString Text;    // The line in cboCamFolders. Plain text.
    int Images = 0;  // Its item data.
  };

  QString Status;  // sspStatus. Plain text.
  Colour StatusColour = kBlack;
  /// What went wrong besides, in plain words: files that could not be written, why the camera did
  /// not answer. Empty most of the time.
  QString Fault;
  int Percent = 0;  // sspStatusPct
  bool PercentVisible = false;
  bool AbortVisible = false;  // cmdAbort

  QString ImageCount = QStringLiteral("0");     // sspImgCount
  QString SelectedCount = QStringLiteral("0");  // sspSelImgCount
  std::vector<Folder> Folders;                  // cboCamFolders
  int SelectedFolder = -1;                      // -1: none.

  bool DownloadEnabled = false;     // cmdDownload
  bool DownloadAllEnabled = false;  // cmdDownloadAll
  bool DeleteAllEnabled = false;    // cmdDeleteAll

  bool BusyPointer = false;
  /// A call is under way: everything but cmdAbort is to be kept from the user. Calls that come
  /// nevertheless do nothing.
  bool Busy = false;

  QStringList CamFolderNames;  // Exact names as used for paths, the root as kCameraRootShown.
  int CamImageTotal = 0;
  bool AbortRequested = false;  // chkAbort
};

}  // namespace tessa
