#include "tool/thumbnail_command.h"

#include <QImage>

#include "browser/tile.h"
#include "browser/tile_picture.h"
#include "core/file_access.h"
#include "core/steps.h"
#include "core/write_file.h"
#include "tool/streams.h"
#include "view/picture_file.h"

namespace tessa {
int RunThumbnail(const ThumbnailCall& call) {
  const int palette = FindPalette(FromArgument(call.Palette));
  if (palette < 0) {
    PrintError("there is no palette \"" + call.Palette + "\"");
    return kToolWrongCall;
  }
  const auto palettes = ReadToolPalettes(true);
  if (!palettes) {
    return kToolFailed;
  }
  const QString path = FromArgument(call.Image);
  const QString target = FromArgument(call.Out);
  try {
    if (IsSameFile(path, target)) {
      throw StepFailure("the picture would overwrite the image itself");
    }
    const LoadedPicture picture = TilePicture(path);
    const ColourTable& colours = palettes->PaletteTable.at(static_cast<std::size_t>(palette));
    const QImage image = call.Size == 0 ? PaletteImage(picture, colours)
                                        : FittedImage(picture, colours, {call.Size, call.Size});
    WriteWholeFile(target, EncodePng(image, PngEffort::kQuick),
                   call.Force ? Overwrite::kReplace : Overwrite::kRefuse);
    return kToolDone;
  } catch (const std::exception& failure) {
    PrintError(path, failure.what());
    return kToolFailed;
  }
}

}  // namespace tessa
