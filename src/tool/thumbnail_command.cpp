#include "tool/thumbnail_command.h"

#include <CLI/CLI.hpp>
#include <QImage>

#include "browser/tile.h"
#include "browser/tile_picture.h"
#include "core/file_access.h"
#include "core/steps.h"
#include "core/write_file.h"
#include "tool/streams.h"
#include "view/picture_file.h"

namespace tessa {
namespace {

constexpr int kLargestSize = 4096;

}  // namespace

ThumbnailCommand::ThumbnailCommand(CLI::App& tool)
    : command_(tool.add_subcommand("thumbnail", "Write what the browser's tile shows as PNG")) {
  command_->add_option("IMAGE", image_, "Image")->required();
  command_->add_option("-o,--output", out_, "PNG file to write")->required();
  command_->add_option("--size", size_, "Longest side in pixels; 0: as it is, with a palette")
      ->check(CLI::Range(0, kLargestSize));
  command_->add_option("--palette", palette_, "Palette by name or number");
  command_->add_flag("--force", force_, "Replace a file that is there already");
}

std::optional<int> ThumbnailCommand::Run() const {
  if (!command_->parsed()) {
    return std::nullopt;
  }
  const int palette = FindPalette(FromArgument(palette_));
  if (palette < 0) {
    PrintError("there is no palette \"" + palette_ + "\"");
    return kToolWrongCall;
  }
  const auto palettes = ReadToolPalettes(true);
  if (!palettes) {
    return kToolFailed;
  }
  const QString path = FromArgument(image_);
  const QString target = FromArgument(out_);
  try {
    if (IsSameFile(path, target)) {
      throw StepFailure("the picture would overwrite the image itself");
    }
    const LoadedPicture picture = TilePicture(path);
    const ColourTable& colours = palettes->PaletteTable.at(static_cast<std::size_t>(palette));
    const QImage image =
        size_ == 0 ? PaletteImage(picture, colours) : FittedImage(picture, colours, {size_, size_});
    WriteWholeFile(target, EncodePng(image, PngEffort::kQuick),
                   force_ ? Overwrite::kReplace : Overwrite::kRefuse);
    return kToolDone;
  } catch (const std::exception& failure) {
    PrintError(path, failure.what());
    return kToolFailed;
  }
}

}  // namespace tessa
