#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>
#include <functional>
#include <vector>

namespace tessa {

/// Every command that menus, buttons and shortcuts of the main window offer.
enum class CommandId {
  // Files.
  kLoadBmp,
  kLoadTiff,
  kLoadJpeg,
  kLoadSit,
  kLoadTxi,
  kLoadTmp,
  kLoadRti,
  kLoadSequence,
  kLoadAllImages,
  kReload,
  kClose,
  kPreferences,
  kPreferencesButton,
  kAbout,
  kExit,
  // Saving, copying and the photograph.
  kSaveBmp,
  kSaveBmpButton,
  kSaveJpeg,
  kSaveTxi,
  kSaveCompositeBmp,
  kSaveCompositeJpeg,
  kCopyImage,
  kCopyPaletteBar,
  kCopyImageWithPaletteBar,
  kCopyVisible,
  kCopyComposite,
  kVisibleWindow,
  kVisibleWindowButton,
  // The view.
  kTrend,
  kZoomIn,
  kZoomOut,
  kZoomFit,
  kRotationAngle,
  kEdgeMagnitude,
  // Frames of a sequence.
  kFirstFrame,
  kPreviousFrame,
  kNextFrame,
  kLastFrame,
  kSaveFrames,
  // Thumbnails and the camera.
  kThumbnails,
  kThumbnailsButton,
  kImageInfo,
  kDownload,
  kDownloadButton,
  // Sound notes.
  kPlaySound,
  kEmbedSound,
  kCount
};

/// The objectName of the command's action: the one place where identifiers have names.
const char* NameOf(CommandId id);

/// One command of the program. Menus, tool panel, context menu, shortcuts and tests all come from
/// the table of these.
struct Command {
  CommandId Id = CommandId::kCount;
  std::function<QString()> Caption;  // In the present language, without marks for keys.
  const char* Icon = "";             // Empty: none.
  QList<QKeySequence> Shortcuts = {};
  std::function<void()> Run = {};      // Empty: its subsystem is not there yet.
  std::function<bool()> Enabled = {};  // Empty: always.
};

}  // namespace tessa
