#include "core/load_image.h"

#include <QDir>

#include "core/file_access.h"
#include "core/loaders.h"
#include "view/range_control.h"
#include "view/units.h"
#include "view/zoom.h"

namespace tessa {
namespace {

enum class Ending { kSit, kBmp, kTxi, kTif, kJpg, kOther };

Ending EndingOf(const QString& upperCasedPath) {
  const QString ending = KindEnding(upperCasedPath);
  if (ending == QLatin1String("SIT")) {
    return Ending::kSit;
  }
  if (ending == QLatin1String("BMP")) {
    return Ending::kBmp;
  }
  if (ending == QLatin1String("TXI")) {
    return Ending::kTxi;
  }
  if (ending == QLatin1String("TIF")) {
    return Ending::kTif;
  }
  return ending == QLatin1String("JPG") ? Ending::kJpg : Ending::kOther;
}

/// Kinds whose loader leaves indices in the buffer that still have to be read row by row.
bool HasRowPass(Ending ending) {
  return ending != Ending::kSit;
}

void ResetForLoad(Session& session) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  session.Faults.clear();
  session.Steps.Clear();
  image.ImageDate.clear();
  image.ImageTime.clear();
  image.IsLegacy8Bit = false;
  image.HasVisibleImage = false;
  image.VisibleWindowOpen = false;
  view.VisibleImageEntries = false;
  view.SoundButtonsVisible = false;
  image.SoundFile.clear();
  image.SoundFileTitle.clear();
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

void RunLoader(Ending ending, Session& session, Progress& progress) {
  ViewState& view = session.View;
  if (ending == Ending::kSit) {
    LoadSit(session, progress);
    return;
  }
  view.RangeToggleVisible = false;
  switch (ending) {
    case Ending::kBmp:
    case Ending::kTxi:
      LoadBmpOrTxi(session);
      break;
    case Ending::kTif:
      LoadTiff(session);
      break;
    case Ending::kJpg:
      view.StatusPanel[5].clear();
      LoadJpeg(session);
      break;
    case Ending::kSit:
    case Ending::kOther:
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
  ShowLoadingText(QStringLiteral("Loading"), session.Image, view, progress);
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
  ShowLoadingText(session.Words.LangString(180, "Loading"), image, view, progress);
  image.FileUnits = image.DisplayUnits;
}

void ClearScaleTexts(Ending ending, OpenImage& image) {
  if (ending == Ending::kBmp || ending == Ending::kTif || ending == Ending::kJpg) {
    image.ScaleHighText.clear();
    image.ScaleLowText.clear();
    image.HasTemperature = false;
  }
}

void InstallPalette(Session& session) {
  for (Picbuf* buffer :
       {&session.Buffers.Picbuf1, &session.Buffers.PicBuf2, &session.Buffers.Picbuf7}) {
    buffer->CreatePalette(session.Palettes.CurrentPalette);
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

/// Reads the displayed values of a picture file row by row and undoes a reversed palette.
void RunRowPass(Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  Picbuf& picture = session.Buffers.Picbuf1;
  for (int row = 0; row < image.ImageHeight; ++row) {
    session.View.LoadProgress = (row + 1.0) / image.ImageHeight * 100.0;
    progress.Advance();
    session.Steps.Run("read row", [&] { picture.GetRow(image.RowBuffers.Row(row), row); });
    if (image.PaletteReversed) {
      session.Steps.Run("undo reversed palette", [&] {
        for (std::int32_t& cell : image.RowBuffers.Row(row)) {
          cell = 255 - cell;
        }
        picture.PutRow(image.RowBuffers.Row(row), row);
      });
    }
  }
  InstallPalette(session);
}

void FinishLoad(Ending ending, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  image.ImageBusy = false;
  view.LoadingTextVisible = false;
  view.UnitPanelVisible = true;
  session.Buffers.PicBuf2.UpdatePalette();
  view.Source = RangeSource::kStored;
  if (ending == Ending::kSit) {
    view.Source = RangeSource::kImage;
    ToggleRangeSource(PiecesForRendering(session, progress));
  }
}

}  // namespace

RenderPieces PiecesForRendering(Session& session, Progress& progress) {
  return {session.Image, session.View, session.Buffers.Picbuf1, session.Range, session.Words,
          session.Steps, progress};
}

QString LoadButtonTip(int imageKind, const Strings& strings) {
  return strings.LangString(179, "Load Image") + QLatin1Char(' ') + KindWord(imageKind) +
         strings.LangString(177, "Images");
}

void ShowCalibratedRange(const OpenImage& image, const Strings& strings, ViewState& view) {
  view.StatusPanel[5] = CalibratedRangeText(image, strings);
}

void ShowEmissivity(const OpenImage& image, const Strings& strings, ViewState& view) {
  view.StatusPanel[4] = strings.LangString(160, "Emissivity") + QStringLiteral(": ") +
                        FormatHundredths(static_cast<double>(image.Emissivity));
}

void ShowLoadingText(const QString& loadingWord, const OpenImage& image, ViewState& view,
                     Progress& progress) {
  view.LoadingText = loadingWord + QLatin1Char(' ') + image.CurrentFile.trimmed();
  view.LoadingTextVisible = true;
  progress.Repaint();
}

void TakeBufferSize(const Picbuf& buffer, OpenImage& image) {
  image.BufferWidth = image.HeaderWidth = image.ImageWidth = buffer.BufWidth();
  image.BufferHeight = image.HeaderHeight = image.ImageHeight = buffer.BufHeight();
}

void LoadImageFile(Session& session, Progress& progress) {
  const Ending ending = EndingOf(session.Image.CurrentFile);
  ResetForLoad(session);
  RunLoader(ending, session, progress);
  SetCommonFields(ending, session, progress);
  ClearScaleTexts(ending, session.Image);
  SetDisplayState(session);
  if (HasRowPass(ending)) {
    RunRowPass(session, progress);
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
  view.StripVisible = false;
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

  LoadImageFile(session, progress);

  view.FrameRowVisible = false;
  InstallPalette(session);
  view.BottomPanelVisible = true;
  view.ScalePanelVisible = true;
  view.StripVisible = true;
  view.LoadProgressVisible = false;
  view.LoadProgress = 0.0;
  view.BlankPanelVisible = false;
  view.PictureVisible = true;
  view.HasImage = true;
  image.ImageBusy = false;
  view.SuppressEvents = false;
  view.BusyPointer = false;
  session.Buffers.Picbuf1.Refresh();
}

void OpenPath(const QString& path, Session& session, Progress& progress) {
  // Only a missing folder is added: resolving dots could lead elsewhere through links.
  SetCurrentFile(session.Image,
                 QDir::isAbsolutePath(path) ? path : QDir::currentPath() + QLatin1Char('/') + path);
  OpenCurrentImage(session, progress);
}

void CloseImage(Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  view.VisibleImageEntries = false;
  view.SoundButtonsVisible = false;
  view.StatusPanel[4].clear();
  view.Title = QStringLiteral("TessaView");
  SetCurrentFile(image, QString());
  image.ScaleHighText = QStringLiteral("255");
  image.ScaleLowText = QStringLiteral("0");
  view.PictureVisible = false;
  view.BottomPanelVisible = false;
  view.ScalePanelVisible = false;
  view.BlankPanelVisible = true;
  view.HasImage = false;
  view.Comment.clear();
  view.Memo.clear();
  view.StatusPanel.fill(QString());
  ClearReadout(session.Cursor, view);
  progress.LetEventsRun();
}

}  // namespace tessa
