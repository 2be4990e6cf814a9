#include "camera/conversion.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "core/units.h"
#include "formats/ansi_text.h"
#include "open/visible_image.h"
#include "view/jpeg_picture.h"

namespace tessa {
namespace {

constexpr int kBarColumns = 30;
constexpr int kLevels = 256;
constexpr int kVisibleWidth = 640;
constexpr int kVisibleHeight = 480;
/// Where the search for the extremes begins: hotter and colder than any camera measures.
constexpr double kStartMinimum = 9999.0;
constexpr double kStartMaximum = -9999.0;

/// The characters of a header field that are no zero bytes, on one line.
QString FieldLine(std::string_view field) {
  QString text = QString::fromStdString(AnsiToUtf8(WithoutZeroBytes(field)));
  for (QChar& character : text) {
    if (character.category() == QChar::Other_Control) {
      character = QLatin1Char(' ');
    }
  }
  return text;
}

/// "2:05:09 PM" from the digits HHMMSS.
QString TimeText(const std::string& digits) {
  constexpr double kNoon = 12.0;
  const std::string_view field = digits;
  const QString hours = FieldLine(field.substr(0, 2));
  const QString rest = QLatin1Char(':') + FieldLine(field.substr(2, 2)) + QLatin1Char(':') +
                       FieldLine(field.substr(4, 2));
  const QString morning = QStringLiteral(" AM");
  const QString evening = QStringLiteral(" PM");
  const double hour = ParseNumber(hours);
  if (hour == 0.0) {
    return QStringLiteral("12") + rest + morning;
  }
  if (hour == kNoon) {
    return hours + rest + evening;
  }
  const bool isLate = hour > kNoon;
  return QString::number(RoundToInteger(isLate ? hour - kNoon : hour)) + rest +
         (isLate ? evening : morning);
}

/// "11/22/2026" from the digits YYMMDD; years from 80 on are of the last century.
QString DateText(const std::string& digits) {
  constexpr double kFirstYearOf1900 = 80.0;
  const std::string_view field = digits;
  const QString year = FieldLine(field.substr(0, 2));
  return FieldLine(field.substr(2, 2)) + QLatin1Char('/') + FieldLine(field.substr(4, 2)) +
         QLatin1Char('/') +
         (ParseNumber(year) < kFirstYearOf1900 ? QStringLiteral("20") : QStringLiteral("19")) +
         year;
}

/// True for a JPEG picture of more pixels than a camera's photograph has, and for one that does not
/// say how many where it should.
bool IsLarge(const Bytes& jpeg) {
  constexpr std::uint64_t kLargePixels = 2'000'000;
  constexpr std::size_t kFrameStart = 9;  // Of a frame header, up to its width.
  for (std::size_t at = 2; at + kFrameStart <= jpeg.size() && jpeg[at] == 0xFF;) {
    const auto number = [&](std::size_t offset) {
      return static_cast<std::size_t>(jpeg[at + offset] << 8 | jpeg[at + offset + 1]);
    };
    const int marker = jpeg[at + 1];
    const bool isFrame =
        marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
    if (isFrame) {
      return std::uint64_t{number(5)} * number(7) > kLargePixels;
    }
    at += 2 + number(2);
  }
  return true;
}

}  // namespace

DownloadConversion::DownloadConversion(const Strings& words, const Palettes& palettes)
    : words_(words), palettes_(palettes) {
  Picbuf1_.CreateBuffer(0, kLevels, kBarColumns, 8);
  for (int row = 0; row < kLevels; ++row) {
    std::ranges::fill(Picbuf1_.IndexRow(row), static_cast<std::uint8_t>(kLevels - 1 - row));
  }
}

void DownloadConversion::dwnLoadThumbSIT(const QString& path) {
  Faults.clear();
  Steps.Clear();
  UsePaletteOfOptions();
  HasVisibleImage = false;
  std::optional<RandomFile> file = RandomFile::Open(path, Faults);
  Bytes start = file ? file->ReadAt(0, kSitDecodeSize) : Bytes();
  SitImage sit = DecodeSit(start, file ? file->Size() : 0);
  if (!start.empty()) {
    header_ = std::move(sit.Header);
    Faults.insert(Faults.end(), sit.Faults.begin(), sit.Faults.end());
  } else if (file) {
    const bool isEmpty = file->Size() == 0;
    Faults.push_back({isEmpty ? ProblemKind::kTruncated : ProblemKind::kUnreadable, 0, "Header",
                      isEmpty ? "the file is empty" : "the file cannot be read", true});
  }
  if (file && Wants(DownloadOptions::kVisible)) {
    dwnProcessVisible(*file, VisiblePosition(header_, sit.VisibleLength));
  }
  PicBuf2.CreateBuffer(0, kSitHeight, kSitWidth, 8);
  PicBuf2.FileType = Picbuf::kBmp;
  TakeHeaderTexts();
  double min = kStartMinimum;
  double max = kStartMaximum;
  dwnGetMinMaxTemp(sit.Raster, min, max, header_.Offset, header_.Gain);
  ChooseScale(min, max);
  MapTemperatures(min, max);
  PicBuf2.ZoomNumerator = PicBuf2.ZoomDenominator = 1.0;
  PicBuf2.SetPaletteTable(DwnPalette_);
  if (Options.PaletteBar == 1 || HasVisibleImage) {
    // The bar says what the texts say, so its labels begin and end with exactly these numbers.
    dwnGetMainImage(PicBuf2, Picbuf1_, ParseNumber(DwnScaleMinText), ParseNumber(DwnScaleMaxText));
  }
}

void DownloadConversion::UsePaletteOfOptions() {
  const bool isOffered = Options.PaletteIndex >= 0 && Options.PaletteIndex < kOfferedPalettes;
  DwnPalette_ =
      palettes_.PaletteTable.at(isOffered ? static_cast<std::size_t>(Options.PaletteIndex) : 0);
  Picbuf1_.SetPaletteTable(DwnPalette_);
}

void DownloadConversion::TakeHeaderTexts() {
  constexpr double kEmissivitySteps = 100.0;
  constexpr int kMemoWord = 187;
  DwnMemoText =
      words_.LangString(kMemoWord, "Memo") + QStringLiteral(" : ") + FieldLine(header_.Memo);
  DwnEmissivityText = FormatHundredths(header_.EmissivityX100 / kEmissivitySteps);
  DwnTimeText = TimeText(header_.TimeText);
  DwnDateText = DateText(header_.DateText);
}

void DownloadConversion::dwnGetMinMaxTemp(const RawRaster& raster, double& min, double& max,
                                          double offset, double slope) {
  DwnTemps_.AllocateUnset(kSitWidth, kSitHeight);
  const std::span<float> degrees = DwnTemps_.Cells();
  for (std::size_t i = 0; i < degrees.size(); ++i) {
    degrees[i] = static_cast<float>(offset + slope * raster.Counts[i]);
  }
  // Every pixel counts, those at the border as well. Each limit guards its own side only: a pixel
  // below the lower one may still be the hottest.
  const double lower = header_.RangeLow;
  const double upper = header_.RangeHigh;
  DwnImageMin = static_cast<float>(min);
  DwnImageMax = static_cast<float>(max);
  for (const float value : degrees) {
    if (value > DwnImageMax && value <= upper) {
      DwnImageMax = value;
    }
    if (value < DwnImageMin && value >= lower) {
      DwnImageMin = value;
    }
  }
  min = DwnImageMin;
  max = DwnImageMax;
}

void DownloadConversion::ChooseScale(double& min, double& max) {
  constexpr double kDivisionsToTheEnd = 4.0;
  if (Options.Scale == DownloadOptions::kCameraScale) {
    min = header_.ScaleCenter - kDivisionsToTheEnd * header_.ScaleStep;
    max = header_.ScaleCenter + kDivisionsToTheEnd * header_.ScaleStep;
  } else if (Options.Scale == DownloadOptions::kCustomScale) {
    min = FromDisplayUnits(ParseNumber(Options.MinTemp), Unit());
    max = FromDisplayUnits(ParseNumber(Options.MaxTemp), Unit());
  }
  DwnScaleMinText = DegreesText(min);
  DwnScaleMaxText = DegreesText(max);
}

QString DownloadConversion::DegreesText(double celsius) const {
  return TemperatureText(celsius, Unit()) + QStringLiteral(" \u00B0") + QLatin1Char(Unit());
}

void DownloadConversion::MapTemperatures(double min, double max) {
  constexpr double kTop = kLevels - 1;
  double gain = 0.0;
  double bias = 0.0;
  Steps.Run("line from temperature to index", [&] {
    const double slope = Divide(kTop, max - min);
    if (!std::isfinite(slope * min)) {
      throw StepFailure("the scale is too wide");
    }
    gain = slope;
    bias = -slope * min;
  });
  // 1.5 x 2^52: adding it leaves the nearest integer, ties to even, and needs no call.
  constexpr double kRounder = 6755399441055744.0;
  for (int row = 0; row < kSitHeight; ++row) {
    const std::span<const float> degrees = std::as_const(DwnTemps_).Row(row);
    const std::span<std::uint8_t> indices = PicBuf2.IndexRow(row);
    for (std::size_t i = 0; i < indices.size(); ++i) {
      const double index = std::clamp(gain * static_cast<double>(degrees[i]) + bias, 0.0, kTop);
      indices[i] = static_cast<std::uint8_t>(static_cast<int>((index + kRounder) - kRounder));
    }
  }
}

void DownloadConversion::dwnProcessVisible(const RandomFile& file, std::uint64_t position) {
  const Bytes jpeg = CutOutVisible(file, position);
  if (jpeg.empty()) {
    return;
  }
  HasVisibleImage = true;
  // What cannot be decoded leaves a black field, never the photograph of another image.
  pbVis_.CreateBuffer(0, kVisibleHeight, kVisibleWidth, 24);
  Steps.Run("visible picture", [&] {
    if (LargePhotographs == nullptr || !IsLarge(jpeg)) {
      TakePhotograph(jpeg, position);
      return;
    }
    LargePhotographs->acquire();
    const std::unique_ptr<std::counting_semaphore<>, void (*)(std::counting_semaphore<>*)> turn(
        LargePhotographs, [](std::counting_semaphore<>* turns) { turns->release(); });
    TakePhotograph(jpeg, position);
  });
}

void DownloadConversion::TakePhotograph(const Bytes& jpeg, std::uint64_t position) {
  Problems faults;
  LoadedPicture picture = LoadJpegPicture(MemorySource(jpeg), PictureUse::kColours, faults);
  for (const Problem& fault : faults) {
    Faults.push_back({fault.Kind, position - 1, std::string(kVisibleField), fault.Text, false});
  }
  if (picture.Width == 0) {
    throw StepFailure("the visible picture cannot be decoded");
  }
  Picbuf pbVisLoad;
  pbVisLoad.Take(std::move(picture));
  // The last column stays out, as everywhere where these photographs are shown.
  pbVisLoad.SelWidth = pbVisLoad.BufWidth() - 1;
  pbVisLoad.SelHeight = pbVisLoad.BufHeight();
  pbVis_.SelLeft = pbVis_.SelTop = 0;
  pbVis_.SelWidth = pbVis_.BufWidth();
  pbVis_.SelHeight = pbVis_.BufHeight();
  pbVis_.CopyFrom(true, pbVisLoad, true);
}

void DownloadConversion::dwnCleanUp() {
  DwnTemps_ = {};
  for (Picbuf* buffer : {&pbResult_, &pbVis_, &PicBuf2}) {
    buffer->FreeBuffer();
  }
}

}  // namespace tessa
