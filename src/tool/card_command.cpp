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

int CountImages(CardLink& card) {
  int images = 0;
  for (int i = 0; i < card.FolderCount(); ++i) {
    images += card.ImageCount(i);
  }
  return images;
}

/// Scale and limits; false when the text is neither a choice nor two rising numbers.
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
  options.MinTemp = QString::number(range->Low, 'f');
  options.MaxTemp = QString::number(range->High, 'f');
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
  return kToolDone;
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
    PrintError("--scale takes camera, auto or LO:HI with LO below HI");
    return kToolWrongCall;
  }
  const auto palettes = ReadToolPalettes(WantsPictures(options));
  CardLink card(FromArgument(call.Card));
  if (!palettes || !Open(card, call.Card)) {
    return kToolFailed;
  }
  // Texts are drawn with the fonts of a GUI application, which needs no display for it.
  std::unique_ptr<QGuiApplication> application;
  int argumentCount = 1;
  std::array<char, 10> name = {"tessatool"};
  std::array<char*, 2> arguments = {name.data(), nullptr};
  if (OverlayLines(options) > 0 || (WantsPictures(options) && call.Bar)) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    BeginPlatformStart("tessatool");
    application = std::make_unique<QGuiApplication>(argumentCount, arguments.data());
    EndPlatformStart();
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
  return isDone ? kToolDone : kToolFailed;
}

}  // namespace tessa
