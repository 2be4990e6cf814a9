#include "view/readout.h"

#include <algorithm>

#include "core/units.h"

namespace tessa {
namespace {

/// Temperature in the unit of display at a 1-based position whose palette index is `index`.
double TemperatureAt(int x, int y, int index, const OpenImage& image) {
  if (RulesByName(image).ReadsGrid) {
    return InDisplayUnits(static_cast<double>(image.TempGrid.AtClamped(x - 1, y - 1)),
                          image.DisplayUnits);
  }
  const double minimum = image.ShownLow;
  const double maximum = image.ShownHigh;
  const double value = (maximum - minimum) * (index / 255.0) + minimum;
  return std::clamp(value, std::min(minimum, maximum), std::max(minimum, maximum));
}

int IndexAt(int x, int y, const OpenImage& image) {
  if (x < 1 || x > image.ImageWidth || y < 1 || y > image.ImageHeight ||
      y > image.RowBuffers.Rows() || x > image.RowBuffers.CellCount()) {
    return 0;
  }
  return image.RowBuffers.Row(y - 1)[static_cast<std::size_t>(x - 1)];
}

/// Numbers in the panels keep the blank that stands for their plus sign.
QString Joined(const QString& text, int number) {
  return text + (number >= 0 ? QStringLiteral(" ") : QString()) + QString::number(number);
}

}  // namespace

bool UpdateReadout(int clientX, int clientY, const OpenImage& image, const Picbuf& picture,
                   const Strings& strings, Readout& readout, ViewState& view) {
  const int x = picture.ClientToImageX(clientX) + 1;
  const int y = picture.ClientToImageY(clientY) + 1;
  if (x == readout.LastX && y == readout.LastY) {
    return false;
  }
  readout.LastX = x;
  readout.LastY = y;
  readout.ReadoutIndex = IndexAt(x, y, image);
  view.StatusPanel[1] = Joined(QStringLiteral("X: "), x);
  view.StatusPanel[2] = Joined(QStringLiteral("Y: "), y);
  if (image.HasTemperature) {
    const QString text =
        FormatTenths(TemperatureAt(x, y, readout.ReadoutIndex, image)) +
        (view.CelsiusSelected ? QStringLiteral(" \u00B0C") : QStringLiteral(" \u00B0F"));
    view.PictureTip = QLatin1Char(' ') + text + QLatin1Char(' ');
    view.StatusPanel[3] = strings.LangString(256, "Temp") + QStringLiteral(": ") + text;
  } else {
    view.PictureTip.clear();
    view.StatusPanel[3] = Joined(strings.LangString(205, "Palette Entry") + QStringLiteral(": "),
                                 readout.ReadoutIndex);
  }
  return true;
}

void ClearReadout(Readout& readout, ViewState& view) {
  readout.LastX = -1;
  readout.LastY = -1;
  view.PictureTip.clear();
  view.StatusPanel[1].clear();
  view.StatusPanel[2].clear();
  view.StatusPanel[3].clear();
}

}  // namespace tessa
