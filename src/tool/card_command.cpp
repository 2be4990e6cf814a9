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

namespace tessa {
namespace {

constexpr int kMostJobs = 1024;

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

CardCommands::CardCommands(CLI::App& tool)
    : command_(tool.add_subcommand("card", "Work with the memory card of a camera")),
      listCommand_(command_->add_subcommand("list", "List its folders and images")),
      downloadCommand_(command_->add_subcommand("download", "Bring its images into a folder")),
      deleteCommand_(command_->add_subcommand("delete-all", "Delete all its images")) {
  command_->require_subcommand(1);
  for (CLI::App* const command : {listCommand_, downloadCommand_, deleteCommand_}) {
    command->add_option("FOLDER", card_, "Where the card is")->required();
  }
  listCommand_->add_flag("--json", json_, "One JSON object");
  deleteCommand_->add_flag("--yes", yes_, "Delete without a question")->required();
  AddDownload();
}

void CardCommands::AddDownload() {
  CLI::App* const command = downloadCommand_;
  command->add_option("--to", to_, "Folder that they go to")->required();
  command->add_option("--folder", folder_, "The card's folder; all if left out");
  command->add_flag("--sit", sit_, "The images as they are");
  command->add_flag("--bmp", bmp_, "Pictures as bitmaps");
  command->add_flag("--jpg", jpg_, "Pictures as JPEG files");
  command->add_option("--quality", quality_, "Quality of these, 5 to 100; else 95");
  command->add_option("--scale", scale_,
                      "Temperatures that span the palette: camera, auto or LO:HI");
  command->add_option("--unit", unit_, "C or F, for --scale and the texts")
      ->transform(CLI::IsMember({"C", "F"}, CLI::ignore_case));
  command->add_option("--palette", palette_, "Palette by name or number");
  command->add_flag("--bar", bar_, "With the palette bar");
  command->add_flag("--date", date_, "With the date below");
  command->add_flag("--time", time_, "With the time");
  command->add_flag("--emissivity", emissivity_, "With the emissivity");
  command->add_flag("--extremes", extremes_, "With the lowest and highest temperature");
  command->add_flag("--memo", memo_, "With the annotation");
  command->add_flag("--visible", visible_, "With the visible-light picture");
  auto* const replace = command->add_flag("--replace", replace_, "Replace files of the same name");
  command->add_flag("--skip", skip_, "Leave out what is there already")->excludes(replace);
  command->add_option("--jobs", jobs_, "Images to work on at once")
      ->check(CLI::Range(1, kMostJobs));
}

std::optional<int> CardCommands::Run() const {
  if (!command_->parsed()) {
    return std::nullopt;
  }
  return listCommand_->parsed() ? List() : downloadCommand_->parsed() ? Download() : DeleteAll();
}

int CardCommands::List() const {
  CardLink card(FromArgument(card_));
  if (!Open(card, card_)) {
    return kToolFailed;
  }
  QJsonArray folders;
  for (int i = 0; i < card.FolderCount(); ++i) {
    QJsonArray images;
    if (!json_) {
      PrintLine(card.FolderName(i));
    }
    for (int k = 0; k < card.ImageCount(i); ++k) {
      if (json_) {
        images.append(ShownPath(card.ImageFileName(i, k)));
      } else {
        PrintLine(QStringLiteral("  ") + card.ImageFileName(i, k));
      }
    }
    folders.append(QJsonObject{{QStringLiteral("Name"), ShownPath(card.FolderName(i))},
                               {QStringLiteral("Images"), images}});
  }
  const int count = CountImages(card);
  if (json_) {
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

int CardCommands::Download() const {
  DownloadOptions options;
  options.TargetPath = FromArgument(to_);
  options.Sit = sit_ ? 1 : 0;
  options.Bmp = bmp_ ? 1 : 0;
  options.Jpeg = jpg_ ? 1 : 0;
  options.JpegQuality = FromArgument(quality_);
  options.Unit = unit_ == "F" ? 1 : 0;
  options.PaletteBar = bar_ ? 1 : 0;
  options.Overlay = {date_ ? 1 : 0,     time_ ? 1 : 0, emissivity_ ? 1 : 0,
                     extremes_ ? 1 : 0, memo_ ? 1 : 0, visible_ ? 1 : 0};
  options.PaletteIndex = FindPalette(FromArgument(palette_));
  if (!WantsAnyFormat(options)) {
    PrintError("give at least one of --sit, --bmp and --jpg");
    return kToolWrongCall;
  }
  if (options.PaletteIndex < 0) {
    PrintError("there is no palette \"" + palette_ + "\"; see export --palette");
    return kToolWrongCall;
  }
  if (!TakeScale(FromArgument(scale_), options)) {
    PrintError("--scale takes camera, auto or LO:HI with LO below HI");
    return kToolWrongCall;
  }
  const auto palettes = ReadToolPalettes(WantsPictures(options));
  CardLink card(FromArgument(card_));
  if (!palettes || !Open(card, card_)) {
    return kToolFailed;
  }
  // Texts are drawn with the fonts of a GUI application, which needs no display for it.
  std::unique_ptr<QGuiApplication> application;
  int argumentCount = 1;
  std::array<char, 10> name = {"tessatool"};
  std::array<char*, 2> arguments = {name.data(), nullptr};
  if (OverlayLines(options) > 0 || (WantsPictures(options) && bar_)) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    BeginPlatformStart("tessatool");
    application = std::make_unique<QGuiApplication>(argumentCount, arguments.data());
    EndPlatformStart();
  }
  const auto existing = replace_ ? CardTargets::kReplace
                        : skip_  ? CardTargets::kSkip
                                 : CardTargets::kRefuse;
  CardDownload download(card, options, existing, *palettes);
  try {
    download.Plan(folder_.empty() ? std::nullopt : std::optional(FromArgument(folder_)));
  } catch (const StepFailure& reason) {
    PrintError(reason.what());
    return kToolFailed;
  }
  return download.Run(jobs_);
}

int CardCommands::DeleteAll() const {
  CardLink card(FromArgument(card_));
  if (!Open(card, card_)) {
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
    PrintError(FromArgument(card_), fault);
  }
  return isDone ? kToolDone : kToolFailed;
}

}  // namespace tessa
