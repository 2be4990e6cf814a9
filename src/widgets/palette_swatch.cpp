#include "widgets/palette_swatch.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>

namespace tessa {

QIcon PaletteSwatch(const ColourTable& table) {
  QImage bar(256, 1, QImage::Format_RGB32);
  for (int i = 0; i < bar.width(); ++i) {
    const Colour colour = table[static_cast<std::size_t>(i)];
    bar.setPixel(i, 0, qRgb(RedOf(colour), GreenOf(colour), BlueOf(colour)));
  }
  QIcon swatch;
  for (const int density : {1, 2}) {
    QPixmap picture = QPixmap::fromImage(bar.scaled(kSwatchSize * density));
    // An outline, so that an end in the desktop's own colour does not vanish.
    QPainter painter(&picture);
    painter.setPen(
        QPen(QColor(128, 128, 128), density, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    const double half = density / 2.0;
    painter.drawRect(QRectF(picture.rect()).adjusted(half, half, -half, -half));
    painter.end();
    swatch.addPixmap(picture);
  }
  return swatch;
}

}  // namespace tessa
