#include "tool/card_command.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>
#include <memory>

#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/platform_failure.h"
#include "core/steps.h"
#include "core/units.h"
#include "export/image_export.h"
#include "tool/card_download.h"

namespace tessa {
namespace {

QString Counted(int count, const char* thing) {
  return QString::number(count) + QLatin1Char(' ') + QString::fromLatin1(thing) +
         (count == 1 ? QString() : QStringLiteral("s"));
}

/// Opens the card and reads what is on it; false after a report.
bool Open(CardLink& card, const std::string& folder) {
  if (card.OpenLink() && card.ReadCameraInfo()) {
    return true;
  }
  PrintError(FromArgument(folder), card.Fault());
  return false;
}

/// Says which folders could not be listed; false when there are any.
bool TellFolderFaults(CardLink& card) {
  bool isAll = true;
  for (int i = 0; i < card.FolderCount(); ++i) {
    const std::string fault = card.FolderFault(i);
    if (!fault.empty()) {
      PrintError(fault);
      isAll = false;
    }
  }
  return isAll;
}

/// Begins the application that texts are drawn with; it needs no display for it. Where the system
/// gives this user no folder for running programs it is to use one of ours, which goes at the end,
/// instead of one that it would leave behind.
class TextDrawing {
 public:
  TextDrawing() {
    constexpr const char* kRuntimeFolder = "XDG_RUNTIME_DIR";
    const bool isGiven = qEnvironmentVariableIsSet(kRuntimeFolder);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!isGiven) {
      try {
        qputenv(kRuntimeFolder, PathToBytes(folder_.TemporaryPath()));
      } catch (const StepFailure&) {
        qunsetenv(kRuntimeFolder);  // Then it makes its own.
      }
    }
    BeginPlatformStart("tessatool");
    application_ = std::make_unique<QGuiApplication>(argumentCount_, arguments_.data());
    EndPlatformStart();
    if (!isGiven) {
      qunsetenv(kRuntimeFolder);
    }
  }
  TextDrawing(const TextDrawing&) = delete;
  TextDrawing& operator=(const TextDrawing&) = delete;
  ~TextDrawing() = default;

 private:
  ApplicationFolder folder_ = OwnFolder();
  int argumentCount_ = 1;
  std::array<char, 10> name_ = {"tessatool"};
  std::array<char*, 2> arguments_ = {name_.data(), nullptr};
  std::unique_ptr<QGuiApplication> application_;
};

int CountImages(CardLink& card) {
  int images = 0;
  for (int i = 0; i < card.FolderCount(); ++i) {
    images += card.ImageCount(i);
  }
  return images;
}

/// Degrees; nothing is as cold or as hot.
constexpr double kFarthestLimit = 1e6;

/// Scale and limits; false when the text is neither a choice nor two rising numbers of sense.
bool TakeScale(const QString& scale, DownloadOptions& options) {
  if (scale == QLatin1String("camera") || scale == QLatin1String("auto")) {
    options.Scale = scale == QLatin1String("auto") ? DownloadOptions::kAutoScale
                                                   : DownloadOptions::kCameraScale;
    return true;
  }
  const auto range = ParseExportRange(scale);
  if (!range || range->From != ExportRange::Choice::kEntered || !(range->Low < range->High)) {
    return false;
  }
  options.Scale = DownloadOptions::kCustomScale;
  if (range->Low < -kFarthestLimit || range->High > kFarthestLimit) {
    return false;
  }
  // As typed where the conversion reads it the same, else with all its digits.
  const QStringList typed = scale.split(QLatin1Char(':'));
  const auto limit = [](const QString& text, double value) {
    return ParseNumber(text) == value ? text : QString::number(value, 'g', 17);
  };
  options.MinTemp = limit(typed.first(), range->Low);
  options.MaxTemp = limit(typed.last(), range->High);
  return true;
}

}  // namespace

int RunCardList(const CardListCall& call) {
  CardLink card(FromArgument(call.Card));
  if (!Open(card, call.Card)) {
    return kToolFailed;
  }
  QJsonArray folders;
  for (int i = 0; i < card.FolderCount(); ++i) {
    QJsonArray images;
    if (!call.Json) {
      PrintLine(card.FolderName(i));
    }
    for (int k = 0; k < card.ImageCount(i); ++k) {
      if (call.Json) {
        images.append(ShownPath(card.ImageFileName(i, k)));
      } else {
        PrintLine(QStringLiteral("  ") + card.ImageFileName(i, k));
      }
    }
    folders.append(QJsonObject{{QStringLiteral("Name"), ShownPath(card.FolderName(i))},
                               {QStringLiteral("Images"), images}});
  }
  const int count = CountImages(card);
  if (call.Json) {
    PrintOut(PlainJson(QJsonDocument(QJsonObject{{QStringLiteral("Card"), ShownPath(card.Folder())},
                                                 {QStringLiteral("ImageCount"), count},
                                                 {QStringLiteral("Folders"), folders}})
                           .toJson()));
  } else {
    PrintLine(Counted(count, "image") + QStringLiteral(" in ") +
              Counted(card.FolderCount(), "folder"));
  }
  return TellFolderFaults(card) ? kToolDone : kToolFailed;
}

int RunCardDownload(const CardDownloadCall& call) {
  DownloadOptions options;
  options.TargetPath = FromArgument(call.To);
  options.Sit = call.Sit ? 1 : 0;
  options.Bmp = call.Bmp ? 1 : 0;
  options.Jpeg = call.Jpg ? 1 : 0;
  options.JpegQuality = FromArgument(call.Quality);
  options.Unit = call.Unit == "F" ? 1 : 0;
  options.PaletteBar = call.Bar ? 1 : 0;
  options.Overlay = {call.Date ? 1 : 0,     call.Time ? 1 : 0, call.Emissivity ? 1 : 0,
                     call.Extremes ? 1 : 0, call.Memo ? 1 : 0, call.Visible ? 1 : 0};
  options.PaletteIndex = FindPalette(FromArgument(call.Palette));
  if (!WantsAnyFormat(options)) {
    PrintError("give at least one of --sit, --bmp and --jpg");
    return kToolWrongCall;
  }
  if (options.PaletteIndex < 0) {
    PrintError("there is no palette \"" + call.Palette + "\"; see export --palette");
    return kToolWrongCall;
  }
  if (!TakeScale(FromArgument(call.Scale), options)) {
    PrintError(
        "--scale takes camera, auto or LO:HI with LO below HI, both from -1000000 to 1000000");
    return kToolWrongCall;
  }
  const auto palettes = ReadToolPalettes(WantsPictures(options));
  CardLink card(FromArgument(call.Card));
  if (!palettes || !Open(card, call.Card)) {
    return kToolFailed;
  }
  std::unique_ptr<TextDrawing> drawing;
  if (OverlayLines(options) > 0 || (WantsPictures(options) && call.Bar)) {
    drawing = std::make_unique<TextDrawing>();
  }
  const auto existing = call.Replace ? CardTargets::kReplace
                        : call.Skip  ? CardTargets::kSkip
                                     : CardTargets::kRefuse;
  CardDownload download(card, options, existing, *palettes);
  try {
    download.Plan(call.Folder.empty() ? std::nullopt : std::optional(FromArgument(call.Folder)));
  } catch (const StepFailure& reason) {
    PrintError(reason.what());
    return kToolFailed;
  }
  return download.Run(call.Jobs);
}

int RunCardDeleteAll(const std::string& folder) {
  CardLink card(FromArgument(folder));
  if (!Open(card, folder)) {
    return kToolFailed;
  }
  QStringList images;
  for (int i = 0; i < card.FolderCount(); ++i) {
    for (int k = 0; k < card.ImageCount(i); ++k) {
      images += card.ImagePath(i, k);
    }
  }
  const bool isAll = TellFolderFaults(card);
  const bool isDone = card.DeleteAllImages();
  const std::string fault = card.Fault();
  int done = 0;
  for (const QString& image : images) {
    if (!IsTaken(image)) {
      PrintLine(image + QStringLiteral(" deleted"));
      ++done;
    }
  }
  PrintLine(Counted(done, "image") + QStringLiteral(" deleted"));
  if (!isDone) {
    PrintError(FromArgument(folder), fault);
  }
  return isDone && isAll ? kToolDone : kToolFailed;
}

}  // namespace tessa
