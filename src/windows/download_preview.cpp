#include "windows/download_preview.h"

#include <QPainter>
#include <algorithm>

#include "core/path_bytes.h"
#include "widgets/plain_text.h"

namespace tessa {
namespace {

constexpr QSize kSmallest(320, 150);
constexpr QSize kWanted(480, 220);

QString NameOfFile(const QString& path) {
  return OneLine(ShownPath(path.mid(path.lastIndexOf(QLatin1Char('/')) + 1)));
}

}  // namespace

DownloadPreview::DownloadPreview(const Strings& words, const Palettes& palettes, QWidget* parent)
    : QFrame(parent), words_(words), conversion_(words, palettes) {
  setObjectName(QStringLiteral("PicBuf2"));
  setFrameShape(QFrame::StyledPanel);
  setMinimumSize(kSmallest);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize DownloadPreview::sizeHint() const {
  return kWanted;
}

void DownloadPreview::ShowFile(const QString& path, const DownloadOptions& options) {
  picture_ = {};
  if (!path.isEmpty()) {
    conversion_.Options = options;
    conversion_.dwnLoadThumbSIT(path);
    if (FindNoImage(conversion_.Faults) == nullptr) {
      if (const int lines = OverlayLines(options); lines > 0) {
        conversion_.dwnBuildOvl(lines, kSitWidth);
      }
      picture_ = conversion_.PicBuf2.ViewPicture();
    }
  }
  setAccessibleName(
      picture_.isNull()
          ? words_.LangString(566, "No image to preview")
          : words_.LangString(565, "Preview of %1").replace(QLatin1String("%1"), NameOfFile(path)));
  setToolTip(PlainToolTip(accessibleName()));
  update();
}

void DownloadPreview::paintEvent(QPaintEvent* event) {
  QFrame::paintEvent(event);
  QPainter painter(this);
  const QRect room = contentsRect();
  if (picture_.isNull()) {
    painter.setPen(palette().color(QPalette::Disabled, QPalette::WindowText));
    painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, accessibleName());
    return;
  }
  const QSize size =
      picture_.size().boundedTo(picture_.size().scaled(room.size(), Qt::KeepAspectRatio));
  const QPoint corner = room.center() - QPoint(size.width() / 2, size.height() / 2);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  // Made smaller before it is drawn: the painter alone would leave out rows.
  const qreal ratio = devicePixelRatioF();
  painter.drawImage(QRect(corner, size),
                    picture_.scaled((QSizeF(size) * ratio).toSize(), Qt::IgnoreAspectRatio,
                                    Qt::SmoothTransformation));
}

}  // namespace tessa
