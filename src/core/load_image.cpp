#include "core/load_image.h"

#include <QDir>
#include <algorithm>
#include <array>
#include <new>
#include <optional>
#include <utility>

#include "core/file_access.h"
#include "core/loaders.h"
#include "formats/ansi_text.h"
#include "formats/txi_words.h"
#include "view/range_control.h"
#include "view/units.h"
#include "view/zoom.h"

namespace tessa {
namespace {

enum class Ending { kBin, kTmp, kSit, kRti, kBmp, kTxi, kTif, kJpg, kOther };

Ending EndingOf(const QString& upperCasedPath) {
  struct Known {
    const char* Text;
    Ending Value;
  };
  static constexpr std::array<Known, 8> kKnown = {{{"BIN", Ending::kBin},
                                                   {"TMP", Ending::kTmp},
                                                   {"SIT", Ending::kSit},
                                                   {"RTI", Ending::kRti},
                                                   {"BMP", Ending::kBmp},
                                                   {"TXI", Ending::kTxi},
                                                   {"TIF", Ending::kTif},
                                                   {"JPG", Ending::kJpg}}};
  const QString ending = KindEnding(upperCasedPath);
  for (const Known& known : kKnown) {
    if (ending == QLatin1String(known.Text)) {
      return known.Value;
    }
  }
  return Ending::kOther;
}

/// Kinds whose loader leaves indices in the buffer that still have to be read row by row. The
/// others make the indices from temperatures.
bool HasRowPass(Ending ending) {
  return ending != Ending::kBin && ending != Ending::kTmp && ending != Ending::kSit &&
         ending != Ending::kRti;
}

void ResetForLoad(Session& session) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  session.ConversionOutputs.clear();
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

/// Degrees of each of the 256 palette indices. Indices whose formula fails have no entry.
using DegreesOfIndex = std::array<std::optional<float>, 256>;

DegreesOfIndex TxiDegrees(const OpenImage& image) {
  DegreesOfIndex degrees;
  const auto low = static_cast<double>(image.ScaleMin);
  const double span = static_cast<double>(image.ScaleMax) - low;
  for (std::size_t i = 0; i < degrees.size(); ++i) {
    degrees[i] = static_cast<float>(span * (static_cast<double>(i) / 255.0) + low);
  }
  return degrees;
}

DegreesOfIndex TrailerDegrees(const OpenImage& image, StepLog& steps) {
  DegreesOfIndex degrees;
  const auto low = static_cast<double>(image.PaletteTempLow);
  const double span = static_cast<double>(image.PaletteTempHigh) - low;
  const double indices = image.PaletteIndexHigh - image.PaletteIndexLow;
  for (std::size_t i = 0; i < degrees.size(); ++i) {
    steps.Run("degrees of index", [&] {
      const double position = static_cast<double>(i) - image.PaletteIndexLow;
      degrees[i] = static_cast<float>(Divide(position * span, indices) + low);
    });
  }
  return degrees;
}

/// Turns one row of displayed values into degrees.
void MeasureRow(int row, const DegreesOfIndex& degrees, OpenImage& image) {
  const std::span<const std::uint8_t> cells = std::as_const(image.RowBuffers).Row(row);
  const std::span<float> grid = image.TempGrid.Row(row);
  for (std::size_t column = 0; column < cells.size(); ++column) {
    if (const auto& value = degrees.at(static_cast<std::size_t>(cells[column]))) {
      grid[column] = *value;
    }
  }
}

/// The extremes of a bitmap grow with every row, and the range control with them.
void FollowExtremes(int row, Session& session) {
  OpenImage& image = session.Image;
  for (const float degrees : std::as_const(image.TempGrid).Row(row)) {
    image.TempMin = std::min(image.TempMin, degrees);
    image.TempMax = std::max(image.TempMax, degrees);
  }
  InitRangeControl(ImageExtremes(image), StoredScale(image), image.DisplayUnits, session.Range,
                   session.View);
}

/// Reads the displayed values of a picture file row by row, measures those that stand for
/// temperatures, and undoes a reversed palette.
void RunRowPass(Ending ending, Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  Picbuf& picture = session.Buffers.Picbuf1;
  const bool isTxi = ending == Ending::kTxi;
  const bool isMeasuredBmp = ending == Ending::kBmp && image.HasTemperature;
  DegreesOfIndex degrees;
  if (isTxi) {
    degrees = TxiDegrees(image);
  } else if (isMeasuredBmp) {
    degrees = TrailerDegrees(image, session.Steps);
    image.TempMax = -9999.0F;
    image.TempMin = 9999.0F;
  }
  for (int row = 0; row < image.ImageHeight; ++row) {
    session.View.LoadProgress = (row + 1.0) / image.ImageHeight * 100.0;
    progress.Advance();
    session.Steps.Run("read row", [&] { picture.GetRow(image.RowBuffers.Row(row), row); });
    if (isTxi || isMeasuredBmp) {
      session.Steps.Run("measure row", [&] { MeasureRow(row, degrees, image); });
    }
    if (isMeasuredBmp) {
      session.Steps.Run("follow extremes", [&] { FollowExtremes(row, session); });
    }
    if (image.PaletteReversed) {
      session.Steps.Run("undo reversed palette", [&] {
        for (std::uint8_t& cell : image.RowBuffers.Row(row)) {
          cell = static_cast<std::uint8_t>(255 - cell);
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
  session.Buffers.PicBuf2.UpdatePalette();
  view.Source = RangeSource::kStored;
  if (ending == Ending::kSit || ending == Ending::kTmp ||
      ((ending == Ending::kBmp || ending == Ending::kTif) && image.HasTemperature)) {
    view.Source = RangeSource::kImage;
    ToggleRangeSource(PiecesForRendering(session, progress));
  }
}

/// From the dispatch on the file's ending to the zoom.
void RunLoad(Session& session, Progress& progress) {
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

void ReportNoMemory(Session& session) {
  session.View.LoadingTextVisible = false;
  session.Faults.push_back({ProblemKind::kTooLarge, 0, "Memory",
                            "the image is too large: there is not enough memory for it", true});
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

void FinishRadiometricLoad(ImageKindValue kind, Session& session) {
  OpenImage& image = session.Image;
  image.HasTemperature = true;
  session.View.RangeToggleVisible = true;
  ShowCalibratedRange(image, session.Words, session.View);
  // The pair of extremes and scale is that of the new kind, which is only stored at the end.
  const bool isSit = kind == KindSit;
  InitRangeControl(isSit ? TemperaturePair{image.SitTempMin, image.SitTempMax}
                         : TemperaturePair{image.TempMin, image.TempMax},
                   isSit ? TemperaturePair{image.SitScaleMin, image.SitScaleMax}
                         : TemperaturePair{image.ScaleMin, image.ScaleMax},
                   image.DisplayUnits, session.Range, session.View);
  image.ImageKind = kind;
}

QString FieldText(const std::string& field) {
  return QString::fromStdString(AnsiToUtf8(WithoutZeroBytes(field)));
}

void TakeCalibration(const CameraHeader& header, OpenImage& image) {
  image.CalRangeMin = static_cast<float>(header.RangeLow);
  image.CalRangeMax = static_cast<float>(header.RangeHigh);
  image.PixelOffset = static_cast<float>(header.Offset);
  image.PixelGain = static_cast<float>(header.Gain);
}

void MakeRasterBuffers(int width, int height, Session& session) {
  OpenImage& image = session.Image;
  Picbuf& picture = session.Buffers.Picbuf1;
  picture.FileType = Picbuf::kBmp;
  session.Steps.Run("create buffer", [&] { picture.CreateBuffer(0, height, width, 8); });
  TakeBufferSize(picture, image);
  image.TempGrid.Allocate(image.ImageWidth, image.ImageHeight);
  image.RowBuffers.Allocate(image.ImageHeight, image.ImageWidth);
}

QString FrameText(const OpenImage& image, const Strings& strings) {
  return QString::number(image.CurrentFrame) + QLatin1Char(' ') + strings.LangString(199, "of") +
         QLatin1Char(' ') + QString::number(image.FrameCount);
}

void SetScaleTexts(double low, double high, OpenImage& image) {
  image.ScaleHighText = SixCharacters(TemperatureText(high, image.DisplayUnits));
  image.ScaleLowText = SixCharacters(TemperatureText(low, image.DisplayUnits));
}

void TakeBufferSize(const Picbuf& buffer, OpenImage& image) {
  image.BufferWidth = image.HeaderWidth = image.ImageWidth = buffer.BufWidth();
  image.BufferHeight = image.HeaderHeight = image.ImageHeight = buffer.BufHeight();
}

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

  LoadImageFile(session, progress);

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
  view.FrameRowVisible = false;
  view.HasImage = false;
  view.Comment.clear();
  view.Memo.clear();
  view.StatusPanel.fill(QString());
  ClearReadout(session.Cursor, view);
  progress.LetEventsRun();
}

}  // namespace tessa
