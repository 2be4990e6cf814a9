#include "core/open_image.h"

#include <QDir>

#include "core/path_bytes.h"
#include "core/units.h"

namespace tessa {

void SetCurrentFile(OpenImage& image, const QString& path) {
  image.CurrentFilePath = path;
  image.CurrentFile = ShownPath(path).toUpper().trimmed();
  image.CurrentFileName =
      image.CurrentFile.mid(image.CurrentFile.lastIndexOf(QDir::separator()) + 1);
}

const KindRules& RulesByName(const OpenImage& image) {
  return KindOfName(image.CurrentFile);
}

const KindRules& RulesByImageKind(const OpenImage& image) {
  return KindOfImage(image.ImageKind);
}

bool Holds(When rule, const OpenImage& image) {
  return rule == When::kAlways || (rule == When::kMeasured && image.HasTemperature);
}

bool CanMoveRange(const OpenImage& image) {
  return RulesByName(image).MovesRangeByName || RulesByImageKind(image).MovesRange ||
         image.HasTemperature;
}

void SetRangeAsShown(double low, double high, OpenImage& image) {
  // What six characters cannot hold is cut off the number too, so that both say the same.
  constexpr int kTextLength = 6;
  const auto set = [](double value, QString& text, double& number) {
    text = FormatTenths(value).left(kTextLength);
    number = ParseNumber(text);
  };
  set(low, image.ScaleLowText, image.ShownLow);
  set(high, image.ScaleHighText, image.ShownHigh);
}

void SetRangeInForce(double low, double high, OpenImage& image) {
  SetRangeAsShown(InDisplayUnits(low, image.DisplayUnits), InDisplayUnits(high, image.DisplayUnits),
                  image);
}

void SetRangeOfEntries(OpenImage& image) {
  image.ScaleLowText = QStringLiteral("0");
  image.ScaleHighText = QStringLiteral("255");
  image.ShownLow = 0.0;
  image.ShownHigh = 255.0;
}

void SetNoRange(OpenImage& image) {
  image.ScaleLowText.clear();
  image.ScaleHighText.clear();
  image.ShownLow = image.ShownHigh = 0.0;
}

}  // namespace tessa
