#include "widgets/icons.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <vector>

/// The pictures are linked in from a library, so they have to be called for; the macro works
/// outside of namespaces only.
static void InitResources() {
  Q_INIT_RESOURCE(resources);
}

namespace tessa {
namespace {

QByteArray SvgText(const QString& name) {
  InitResources();
  QFile file(QStringLiteral(":/icons/") + name + QStringLiteral(".svg"));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The ink that the pictures' neutral lines are drawn with in their files.
constexpr const char* kFileInk = "#3B4252";

/// Reads and draws an SVG picture when a size is first needed, and keeps what was drawn.
class SvgIconEngine : public QIconEngine {
 public:
  /// An invalid `ink` leaves the picture's own colours.
  SvgIconEngine(QString name, const QColor& ink) : name_(std::move(name)), ink_(ink) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
             QIcon::State /*state*/) override {
    constexpr qreal kDisabledOpacity = 0.4;
    QByteArray svg = SvgText(name_);
    if (ink_.isValid()) {
      svg.replace(kFileInk, ink_.name().toLatin1());
    }
    QSvgRenderer renderer(svg);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    painter->save();
    if (mode == QIcon::Disabled) {
      painter->setOpacity(kDisabledOpacity);
    }
    renderer.render(painter, rect);
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    const bool isDisabled = mode == QIcon::Disabled;
    const auto kept = std::find_if(drawn_.begin(), drawn_.end(), [&](const Drawn& drawn) {
      return drawn.IsDisabled == isDisabled && drawn.Picture.size() == size;
    });
    if (kept != drawn_.end()) {
      return kept->Picture;
    }
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(&painter, QRect(QPoint(), size), mode, state);
    painter.end();
    constexpr std::size_t kMostKept = 6;
    if (drawn_.size() == kMostKept) {
      drawn_.erase(drawn_.begin());
    }
    drawn_.push_back({isDisabled, picture});
    return picture;
  }
  QIconEngine* clone() const override { return new SvgIconEngine(name_, ink_); }

 private:
  struct Drawn {
    bool IsDisabled;
    QPixmap Picture;
  };

  QString name_;
  QColor ink_;
  std::vector<Drawn> drawn_;  // The oldest first.
};

}  // namespace

QIcon ToolIcon(const QString& name, const QColor& ink) {
  return QIcon(new SvgIconEngine(name, ink));
}

void RegisterResources() {
  InitResources();
}

QIcon ApplicationIcon() {
  return QIcon(new SvgIconEngine(QStringLiteral("tessaview"), QColor()));
}

}  // namespace tessa
