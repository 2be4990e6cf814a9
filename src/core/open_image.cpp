#include "core/open_image.h"

#include <QDir>

#include "core/path_bytes.h"

namespace tessa {

QString KindWord(int imageKind) {
  static constexpr std::array<const char*, 8> kWords = {"BMP ", "TIFF ", "JPEG ", "SIT ",
                                                        "TXI ", "TMP ",  "RTI ",  "RTV "};
  if (imageKind < 0 || imageKind >= static_cast<int>(kWords.size())) {
    return {};
  }
  return QString::fromLatin1(kWords[static_cast<std::size_t>(imageKind)]);
}

QString KindEnding(const QString& upperCasedPath) {
  return upperCasedPath.right(3);
}

void SetCurrentFile(OpenImage& image, const QString& path) {
  image.CurrentFilePath = path;
  image.CurrentFile = ShownPath(path).toUpper().trimmed();
  image.CurrentFileName =
      image.CurrentFile.mid(image.CurrentFile.lastIndexOf(QDir::separator()) + 1);
}

bool CanMoveRange(const OpenImage& image) {
  return KindEnding(image.CurrentFile) == QLatin1String("TXI") || image.ImageKind == KindSit ||
         image.ImageKind == KindTmp || image.ImageKind == KindRti || image.HasTemperature;
}

QString SixCharacters(const QString& text) {
  return text.left(6);
}

}  // namespace tessa
