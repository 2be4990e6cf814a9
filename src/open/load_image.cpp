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
#include "open/take_still.h"
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
  view.FrameRowVisible = false;
  view.RangeLowText.clear();
  view.RangeHighText.clear();
  image.ImageBusy = true;
  image.HasTemperature = false;
}

/// Runs the loader of a kind that leaves a picture in the buffer.
void RunPictureLoader(Loader loader, Session& session, Progress& progress) {
  session.View.RangeToggleVisible = false;
  switch (loader) {
    case Loader::kBitmap:
      LoadBmpOrTxi(session);
      break;
    case Loader::kTiff:
      LoadTiff(session);
      break;
    case Loader::kJpeg:
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

void RunLoader(Loader loader, Session& session, Progress& progress) {
  if (loader == Loader::kStill) {
    LoadStill(session, progress);
  } else if (loader == Loader::kSequence) {
    LoadRti(session, progress);
  } else {
    RunPictureLoader(loader, session, progress);
  }
}

/// Sizes, range entry and stores that every kind has in common.
void SetCommonFields(const KindRules& kind, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  TakeBufferSize(session.Buffers.Picbuf1, image);
  const bool ranged = CanMoveRange(image);
  view.RangeEntryVisible = ranged;
  view.RangeSliderVisible = ranged;
  if (kind.HasRowPass) {
    image.RowBuffers.Allocate(image.ImageHeight, image.ImageWidth);
  }
  if (kind.Name == FileKind::kBmp && image.HasTemperature) {
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
  SetRangeInForce(scale.Low, scale.High, image);
  const TemperaturePair range{image.ScaleMin, image.ScaleMax};
  InitRangeControl(range, range, image.DisplayUnits, session.Range, session.View);
  image.HasTemperature = true;
  image.ImageKind = KindTxi;
}

/// The scale of a picture file; radiometric stills and sequences have brought theirs along.
void SetScale(const KindRules& kind, Session& session) {
  OpenImage& image = session.Image;
  if (kind.Name == FileKind::kTxi) {
    SetTxiScale(session);
  } else if (kind.Name == FileKind::kBmp || kind.Name == FileKind::kTif ||
             kind.Name == FileKind::kJpg) {
    if (image.HasTemperature) {
      SetRangeInForce(static_cast<double>(image.PaletteTempAt0),
                      static_cast<double>(image.PaletteTempAt255), image);
    } else {
      SetNoRange(image);
    }
  }
}

void SetDisplayState(Session& session) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  image.DisplayUnits = image.FileUnits;
  view.CelsiusSelected = image.FileUnits != 'F';
  session.Steps.Run("scale display", [&] { UpdateRangeDisplay(image, view, session.Words); });
  image.PreviousKindIndex = static_cast<std::int16_t>(image.ImageKind + 1);
  session.Steps.Run("palette", [&] { UsePalette(session.Palettes, view.PaletteSelection); });
  const Picbuf& picture = session.Buffers.Picbuf1;
  // Of the picture's own palette: a buffer that kept its former contents has none.
  image.PaletteReversed = FindNoImage(session.Faults) == nullptr &&
                          picture.GetPaletteColor(0) > picture.GetPaletteColor(255);
  InstallPalette(session);
  if (image.ScaleHighText.trimmed().isEmpty()) {
    SetRangeOfEntries(image);
    session.Steps.Run("scale display", [&] { UpdateRangeDisplay(image, view, session.Words); });
  }
}

void FinishLoad(const KindRules& kind, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  image.ImageBusy = false;
  view.LoadingTextVisible = false;
  session.Buffers.PicBuf2.UpdatePalette();
  view.Source = RangeSource::kStored;
  if (Holds(kind.OpensByToggle, image)) {
    view.Source = RangeSource::kImage;
    ToggleRangeSource(PiecesForRendering(session, progress));
  }
}

/// From the dispatch on the file's name to the zoom.
void RunLoad(Session& session, Progress& progress) {
  RunLoader(RulesByName(session.Image).LoadedBy, session, progress);
  // A loader may have given the image the name of another kind.
  const KindRules& kind = RulesByName(session.Image);
  SetCommonFields(kind, session, progress);
  SetScale(kind, session);
  SetDisplayState(session);
  if (kind.HasRowPass) {
    RunRowPass(kind.Name, session, progress);
  }
  SetZoomForWidth(session.Image.ImageWidth, session.View.Zoom, session.Buffers.Picbuf1);
  FinishLoad(kind, session, progress);
}

void ReportNoMemory(Session& session) {
  session.View.LoadingTextVisible = false;
  session.Faults.push_back({ProblemKind::kTooLarge, 0, "Memory",
                            "the image is too large: there is not enough memory for it", true});
}

}  // namespace

void LoadImageFile(Session& session, Progress& progress) {
  ResetForLoad(session);
  try {
    RunLoad(session, progress);
  } catch (const std::bad_alloc&) {
    session.Image.ImageBusy = false;
    ReportNoMemory(session);
    return;
  }
  if (session.Steps.RanOutOfMemory()) {
    ReportNoMemory(session);
  }
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
  view.FrameRowVisible = RulesByName(image).Name == FileKind::kRti &&
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
  SetRangeOfEntries(image);
  view.PictureVisible = false;
  view.BottomPanelVisible = false;
  view.ScalePanelVisible = false;
  view.BlankPanelVisible = true;
  view.FrameRowVisible = false;
  view.HasImage = false;
  view.Comment.clear();
  view.Memo.clear();
  view.RangeLowText.clear();
  view.RangeHighText.clear();
  view.StatusPanel.fill(QString());
  ClearReadout(session.Cursor, view);
  progress.LetEventsRun();
}

}  // namespace tessa
