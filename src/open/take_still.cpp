#include "open/take_still.h"

#include <QDir>
#include <algorithm>

#include "core/kinds.h"
#include "open/load_steps.h"
#include "open/visible_image.h"

namespace tessa {
namespace {

/// Name of the wave file that goes with the image.
QString WaveTitle(const OpenImage& image) {
  return image.CurrentFileName.chopped(std::min<qsizetype>(3, image.CurrentFileName.size())) +
         QStringLiteral("WAV");
}

void TakeSound(const SoundFacts& sound, const ApplicationFolder& folder, OpenImage& image) {
  image.SoundEmbedded = sound.Embedded;
  image.CanEmbedSound = sound.CanEmbed;
  if (sound.Embedded || sound.IsBeside) {
    image.SoundFileTitle = WaveTitle(image);
  }
  image.SoundFile =
      sound.Embedded ? folder.Path() + QDir::separator() + image.SoundFileTitle : sound.File;
}

/// The header goes into the record of its kind; the other records keep what they hold.
void TakeHeader(Still& still, OpenImage& image) {
  if (auto* sit = std::get_if<SitHeader>(&still.Header)) {
    image.SitHeader = std::move(*sit);
  } else if (auto* tmp = std::get_if<TmpHeader>(&still.Header)) {
    image.TmpHeader = std::move(*tmp);
  } else if (auto* legacy = std::get_if<LegacyHeader>(&still.Header)) {
    image.LegacyHeader = std::move(*legacy);
  }
}

/// SIT images and those that pass as such keep their pairs apart from all others.
void TakePairs(const Still& still, OpenImage& image) {
  const bool isSit = still.Kind == KindSit;
  (isSit ? image.SitTempMin : image.TempMin) = still.Extremes.Minimum;
  (isSit ? image.SitTempMax : image.TempMax) = still.Extremes.Maximum;
  (isSit ? image.SitScaleMin : image.ScaleMin) = still.StoredScale.Minimum;
  (isSit ? image.SitScaleMax : image.ScaleMax) = still.StoredScale.Maximum;
}

/// An 8-bit picture of the grid's size, and rows to go with it.
void TakeGrid(Still& still, Session& session) {
  OpenImage& image = session.Image;
  Picbuf& picture = session.Buffers.Picbuf1;
  picture.FileType = Picbuf::kBmp;
  session.Steps.Run("create buffer",
                    [&] { picture.CreateBuffer(0, still.Grid.Height(), still.Grid.Width(), 8); });
  TakeBufferSize(picture, image);
  image.RowBuffers.Allocate(image.ImageHeight, image.ImageWidth);
  image.TempGrid = std::move(still.Grid);
}

}  // namespace

void TakeStill(Still still, Session& session) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  session.Faults.insert(session.Faults.end(), still.Faults.begin(), still.Faults.end());
  const bool isBin = KindOfName(image.CurrentFile).Name == FileKind::kBin;

  image.IsLegacy8Bit = still.IsLegacy8Bit;
  image.ImageDate = still.Date;
  image.ImageTime = still.Time;
  view.Comment = still.Comment;
  view.Memo = still.Memo;
  TakeHeader(still, image);
  TakeGrid(still, session);
  TakePairs(still, image);
  image.CalRangeMin = still.CalibratedRange.Minimum;
  image.CalRangeMax = still.CalibratedRange.Maximum;
  if (still.Camera) {
    image.Emissivity = still.Camera->Emissivity;
    image.PixelOffset = still.Camera->Offset;
    image.PixelGain = still.Camera->Gain;
    ShowEmissivity(image, session.Words, view);
  }
  if (isBin) {
    // From here on a SIT image to every test of the kind; no file has this name.
    image.CurrentFile = image.CurrentFile.chopped(3) + QStringLiteral(".SIT");
  } else if (still.Kind == KindSit) {
    image.SitFileLength = static_cast<std::int64_t>(still.FileSize);
    image.SitVersion = still.Version;
    TakeSound(still.Sound, session.Folder, image);
    ExtractVisible(still.PhotographPosition, session);
  }
  FinishRadiometricLoad(still.Kind, session);
  if (isBin) {
    view.StatusPanel[5].clear();
  }
}

void LoadStill(Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  // This word stays English in every language for the kind without a header.
  ShowLoadingText(KindOfName(image.CurrentFile).Name == FileKind::kBin
                      ? QStringLiteral("Loading")
                      : session.Words.LangString(180, "Loading"),
                  image, session.View, progress);
  session.Steps.Run("take still", [&] { TakeStill(ReadStill(image.CurrentFilePath), session); });
  session.View.LoadProgress = 100.0;
  progress.Advance();
}

}  // namespace tessa
