#include "widgets/palette_swatch.h"

#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <algorithm>

namespace tessa {
namespace {

/// Draws a palette when it is first seen: the list has many of them and shows one.
class SwatchEngine : public QIconEngine {
 public:
  explicit SwatchEngine(const ColourTable& table) : table_(table) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/,
             QIcon::State /*state*/) override {
    QImage bar(256, 1, QImage::Format_RGB32);
    for (int i = 0; i < bar.width(); ++i) {
      const Colour colour = table_[static_cast<std::size_t>(i)];
      bar.setPixel(i, 0, qRgb(RedOf(colour), GreenOf(colour), BlueOf(colour)));
    }
    painter->save();
    painter->drawImage(rect, bar.scaled(rect.size()));
    // An outline, so that an end in the desktop's own colour does not vanish.
    const double width = std::max(1.0, static_cast<double>(rect.height()) / kSwatchSize.height());
    painter->setPen(
        QPen(QColor(128, 128, 128), width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    const double half = width / 2.0;
    painter->drawRect(QRectF(rect).adjusted(half, half, -half, -half));
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }
  QIconEngine* clone() const override { return new SwatchEngine(table_); }

 private:
  ColourTable table_;
};

}  // namespace

QIcon PaletteSwatch(const ColourTable& table) {
  return QIcon(new SwatchEngine(table));
}

}  // namespace tessa
