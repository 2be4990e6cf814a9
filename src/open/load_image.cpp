#include "open/load_image.h"

#include <QDir>

#include "core/file_access.h"
#include "core/tell.h"
#include "core/units.h"
#include "formats/txi_words.h"
#include "open/attachments.h"
#include "open/load_steps.h"
#include "open/loaders.h"
#include "open/no_picture.h"
#include "open/row_pass.h"
#include "view/range_control.h"
#include "view/zoom.h"

namespace tessa {
namespace {

void ResetForLoad(Session& session) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  ReleaseAttachments(session);
  session.ConversionOutputs.clear();
  session.Faults.clear();
  session.Steps.Clear();
  image.ImageDate.clear();
  image.ImageTime.clear();
  image.IsLegacy8Bit = false;
  view.StatusPanel[4].clear();
  view.RangeSliderVisible = false;
  view.AutoUpdateVisible = false;
  view.LimitBoxesVisible = false;
  view.MeasuringTool = 3;
  view.FrameRowVisible = false;
  view.RangeLowText.clear();
  view.RangeHighText.clear();
  image.ImageBusy = true;
  image.HasTemperature = false;
}

/// Runs the loader of a kind that leaves a picture in the buffer.
void RunPictureLoader(Ending ending, Session& session, Progress& progress) {
  session.View.RangeToggleVisible = false;
  switch (ending) {
    case Ending::kBmp:
    case Ending::kTxi:
      LoadBmpOrTxi(session);
      break;
    case Ending::kTif:
      LoadTiff(session);
      break;
    case Ending::kJpg:
      session.View.StatusPanel[5].clear();
      LoadJpeg(session);
      break;
    default:
      // No loader runs; only the reason is found out.
      if (ReadFileStart(session.Image.CurrentFilePath, 0, session.Faults)) {
        session.Faults.push_back({ProblemKind::kWrongKind, 0, "Name",
                                  "the file's ending is not that of an image this program reads",
                                  true});
      }
      break;
  }
  Picbuf& picture = session.Buffers.Picbuf1;
  if (picture.BufDepth() >= 16) {
    session.Steps.Run("reduce to 8 bits", [&] { picture.ReduceTo8Bit(); });
  }
  // This word stays English in every language.
  ShowLoadingText(QStringLiteral("Loading"), session.Image, session.View, progress);
}

/// Runs the loader for `ending` and returns the ending that the rest of the load goes by.
Ending RunLoader(Ending ending, Session& session, Progress& progress) {
  switch (ending) {
    case Ending::kBin:
      LoadBin(session, progress);
      return Ending::kSit;
    case Ending::kTmp:
      LoadTmp(session, progress);
      return ending;
    case Ending::kSit:
      LoadSit(session, progress);
      return ending;
    case Ending::kRti:
      LoadRti(session, progress);
      return ending;
    default:
      RunPictureLoader(ending, session, progress);
      return ending;
  }
}

/// Sizes, range entry and stores that every kind has in common.
void SetCommonFields(Ending ending, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  TakeBufferSize(session.Buffers.Picbuf1, image);
  const bool ranged = CanMoveRange(image);
  view.RangeEntryVisible = ranged;
  view.RangeSliderVisible = ranged;
  if (HasRowPass(ending)) {
    image.RowBuffers.Allocate(image.ImageHeight, image.ImageWidth);
  }
  if (ending == Ending::kBmp && image.HasTemperature) {
    image.TempGrid.Allocate(image.ImageWidth, image.ImageHeight);
  }
  ShowLoadingText(session.Words.LangString(180, "Loading"), image, view, progress);
  image.FileUnits = image.DisplayUnits;
}

/// The scale of a TXI image from the words in its bitmap header.
void SetTxiScale(Session& session) {
  OpenImage& image = session.Image;
  image.TempGrid.Allocate(image.ImageWidth, image.ImageHeight);
  const TxiScale scale =
      DecodeTxiWords(image.BmpFileHeader.ReservedLow, image.BmpFileHeader.ReservedHigh);
  image.ScaleMax = image.TempMax = static_cast<float>(scale.High);
  image.ScaleMin = image.TempMin = static_cast<float>(scale.Low);
  SetScaleTexts(scale.Low, scale.High, image);
  const TemperaturePair range{image.ScaleMin, image.ScaleMax};
  InitRangeControl(range, range, image.DisplayUnits, session.Range, session.View);
  image.HasTemperature = true;
  image.ImageKind = KindTxi;
}

void SetScale(Ending ending, Session& session) {
  OpenImage& image = session.Image;
  if (ending == Ending::kTxi) {
    SetTxiScale(session);
  } else if (ending == Ending::kBmp || ending == Ending::kTif || ending == Ending::kJpg) {
    if (image.HasTemperature) {
      SetScaleTexts(static_cast<double>(image.PaletteTempAt0),
                    static_cast<double>(image.PaletteTempAt255), image);
    } else {
      image.ScaleHighText.clear();
      image.ScaleLowText.clear();
    }
  }
}

void SetDisplayState(Session& session) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  image.DisplayUnits = image.FileUnits;
  view.CelsiusSelected = image.FileUnits != 'F';
  view.FahrenheitSelected = image.FileUnits == 'F';
  session.Steps.Run("scale display", [&] { UpdateRangeDisplay(image, view, session.Words); });
  image.PreviousKindIndex = static_cast<std::int16_t>(image.ImageKind + 1);
  view.LoadButtonKind = image.ImageKind;
  view.LoadButtonTip = LoadButtonTip(image.ImageKind, session.Words);
  session.Steps.Run("palette", [&] { UsePalette(session.Palettes, view.PaletteSelection); });
  const Picbuf& picture = session.Buffers.Picbuf1;
  // Of the picture's own palette: a buffer that kept its former contents has none.
  image.PaletteReversed = FindNoImage(session.Faults) == nullptr &&
                          picture.GetPaletteColor(0) > picture.GetPaletteColor(255);
  InstallPalette(session);
  if (image.ScaleHighText.trimmed().isEmpty()) {
    image.ScaleLowText = QStringLiteral("0");
    image.ScaleHighText = QStringLiteral("255");
    session.Steps.Run("scale display", [&] { UpdateRangeDisplay(image, view, session.Words); });
  }
}

void FinishLoad(Ending ending, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  image.ImageBusy = false;
  view.LoadingTextVisible = false;
  session.Buffers.PicBuf2.UpdatePalette();
  view.Source = RangeSource::kStored;
  if (ending == Ending::kSit || ending == Ending::kTmp ||
      (ending == Ending::kBmp && image.HasTemperature)) {
    view.Source = RangeSource::kImage;
    ToggleRangeSource(PiecesForRendering(session, progress));
  }
}

}  // namespace

void LoadImageFile(Session& session, Progress& progress) {
  ResetForLoad(session);
  const Ending named = EndingOf(session.Image.CurrentFile);
  const Ending ending = RunLoader(named, session, progress);
  SetCommonFields(ending, session, progress);
  SetScale(ending, session);
  SetDisplayState(session);
  if (HasRowPass(ending)) {
    RunRowPass(ending, session, progress);
  }
  SetZoomForWidth(session.Image.ImageWidth, session.View.Zoom, session.Buffers.Picbuf1);
  FinishLoad(ending, session, progress);
}

void OpenCurrentImage(Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  if (image.CurrentFile.isEmpty()) {
    return;
  }
  session.Settings.LastFolder =
      image.CurrentFilePath.left(image.CurrentFilePath.lastIndexOf(QDir::separator()) + 1);
  view.PictureVisible = false;
  view.Zoom.ZoomLevel = 1;
  progress.LetEventsRun();
  FillPaletteList(view);

  view.BlankPanelVisible = true;
  view.BottomPanelVisible = false;
  view.ScalePanelVisible = false;
  session.Buffers.Picbuf1.ScrollView(0, 0);
  view.LoadProgress = 0.0;
  view.LoadProgressVisible = true;
  view.BusyPointer = true;
  image.ImageBusy = false;

  view.Title = session.Words.LangString(189, "Corvane T-40 Viewer") + QStringLiteral(" - ") +
               image.CurrentFile;
  view.StatusPanel[6] = image.CurrentFile;
  progress.Repaint();
  view.Zoom.ZoomLevel = 2;
  image.SpotTemperatures.fill({});
  session.Cursor = Readout{};

  LoadAfresh(session, [&] { LoadImageFile(session, progress); });
  if (session.Follower != nullptr) {
    session.Follower->ImageArrived();
  }

  // Only a sequence has frames to step through.
  view.FrameRowVisible = KindEnding(image.CurrentFile) == QLatin1String("RTI") &&
                         FindNoImage(session.Faults) == nullptr && image.FrameCount > 1;
  view.FrameText = FrameText(image, session.Words);
  InstallPalette(session);
  view.BottomPanelVisible = true;
  view.ScalePanelVisible = true;
  view.LoadProgressVisible = false;
  view.LoadProgress = 0.0;
  view.BlankPanelVisible = false;
  view.PictureVisible = true;
  view.HasImage = true;
  image.ImageBusy = false;
  view.SuppressEvents = false;
  view.BusyPointer = false;
  TellAboutFile(session);
  session.Buffers.Picbuf1.Refresh();
}

void OpenPath(const QString& path, Session& session, Progress& progress) {
  // Only a missing folder is added: resolving dots could lead elsewhere through links.
  SetCurrentFile(session.Image, AbsolutePath(path));
  OpenCurrentImage(session, progress);
}

void CloseImage(Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  ReleaseAttachments(session);
  DismissNotice(view);
  view.NoPicture = {};
  view.RangeLowText.clear();
  view.RangeHighText.clear();
  view.StatusPanel[4].clear();
  view.Title = QStringLiteral("TessaView");
  SetCurrentFile(image, QString());
  image.ScaleHighText = QStringLiteral("255");
  image.ScaleLowText = QStringLiteral("0");
  view.PictureVisible = false;
  view.BottomPanelVisible = false;
  view.ScalePanelVisible = false;
  view.BlankPanelVisible = true;
  view.FrameRowVisible = false;
  view.HasImage = false;
  view.Comment.clear();
  view.Memo.clear();
  view.StatusPanel.fill(QString());
  ClearReadout(session.Cursor, view);
  progress.LetEventsRun();
}

}  // namespace tessa
