#include "windows/command.h"

#include <array>

namespace tessa {
namespace {

struct NamedCommand {
  CommandId Id;
  const char* Name;
};

constexpr std::array<NamedCommand, static_cast<std::size_t>(CommandId::kCount)> kNames = {
    {{CommandId::kLoadBmp, "mnuLoadBmp"},
     {CommandId::kLoadTiff, "mnuLoadTIFF"},
     {CommandId::kLoadJpeg, "mnuLoadJPEG"},
     {CommandId::kLoadSit, "mnuLoadIMG"},
     {CommandId::kLoadTxi, "mnuLoadTxi"},
     {CommandId::kLoadTmp, "mnuLoadTMP"},
     {CommandId::kLoadRti, "mnuLoadRTI"},
     {CommandId::kLoadSequence, "mnuLoadSEQ"},
     {CommandId::kLoadAllImages, "mnuLoadQZR"},
     {CommandId::kReload, "mnuReload"},
     {CommandId::kClose, "mnuClose"},
     {CommandId::kPreferences, "mnusetup"},
     {CommandId::kPreferencesButton, "SSCommand1"},
     {CommandId::kAbout, "mnubout"},
     {CommandId::kExit, "mnuExit"},
     {CommandId::kSaveBmp, "mnuSave"},
     {CommandId::kSaveBmpButton, "btnSaveBMP"},
     {CommandId::kSaveJpeg, "mnuSaveJPG"},
     {CommandId::kSaveTxi, "mnuSaveTXI"},
     {CommandId::kSaveCompositeBmp, "mnuSaveCompBMP"},
     {CommandId::kSaveCompositeJpeg, "mnuSaveCompJPG"},
     {CommandId::kCopyImage, "mnucopyclip"},
     {CommandId::kCopyPaletteBar, "mnucopyclip2"},
     {CommandId::kCopyImageWithPaletteBar, "mnucopyclip3"},
     {CommandId::kCopyVisible, "mnuCopyVis"},
     {CommandId::kCopyComposite, "mnuMerge"},
     {CommandId::kVisibleWindow, "mnuVisible"},
     {CommandId::kVisibleWindowButton, "btnViewVis"},
     {CommandId::kTrend, "btnTrend"},
     {CommandId::kZoomIn, "ZoomIn"},
     {CommandId::kZoomOut, "ZoomOut"},
     {CommandId::kZoomFit, "ZoomFit"},
     {CommandId::kRotationAngle, "ToolRotation"},
     {CommandId::kEdgeMagnitude, "ToolEdge"},
     {CommandId::kFirstFrame, "FrameFirst"},
     {CommandId::kPreviousFrame, "FramePrevious"},
     {CommandId::kNextFrame, "FrameNext"},
     {CommandId::kLastFrame, "FrameLast"},
     {CommandId::kSaveFrames, "FrameSave"},
     {CommandId::kThumbnails, "mnuLoadThumb"},
     {CommandId::kThumbnailsButton, "btnthumb"},
     {CommandId::kImageInfo, "SSCommand10"},
     {CommandId::kDownload, "mnu4400"},
     {CommandId::kDownloadButton, "btnDWNLoad"},
     {CommandId::kPlaySound, "btnPlaysound"},
     {CommandId::kEmbedSound, "btnEmbedSound"}}};

constexpr bool StandInOrder() {
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (kNames[i].Id != static_cast<CommandId>(i) || kNames[i].Name == nullptr) {
      return false;
    }
  }
  return true;
}
static_assert(StandInOrder(), "each command has its name, in the order of the enumeration");

}  // namespace

const char* NameOf(CommandId id) {
  return kNames[static_cast<std::size_t>(id)].Name;
}

}  // namespace tessa
