#include "widgets/icons.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

/// The pictures are linked in from a library, so they have to be called for; the macro works
/// outside of namespaces only.
static void InitResources() {
  Q_INIT_RESOURCE(resources);
}

namespace tessa {
namespace {

/// Draws an SVG text when a size is first needed.
class SvgIconEngine : public QIconEngine {
 public:
  explicit SvgIconEngine(QByteArray svg) : svg_(std::move(svg)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
             QIcon::State /*state*/) override {
    constexpr qreal kDisabledOpacity = 0.4;
    QSvgRenderer renderer(svg_);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    painter->save();
    if (mode == QIcon::Disabled) {
      painter->setOpacity(kDisabledOpacity);
    }
    renderer.render(painter, rect);
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }
  QIconEngine* clone() const override { return new SvgIconEngine(svg_); }

 private:
  QByteArray svg_;
};

QByteArray SvgText(const QString& name) {
  InitResources();
  QFile file(QStringLiteral(":/icons/") + name + QStringLiteral(".svg"));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

QIcon ToolIcon(const QString& name, const QColor& ink) {
  return QIcon(new SvgIconEngine(SvgText(name).replace("#3B4252", ink.name().toLatin1())));
}

void RegisterResources() {
  InitResources();
}

QIcon ApplicationIcon() {
  return QIcon(new SvgIconEngine(SvgText(QStringLiteral("tessaview"))));
}

}  // namespace tessa
