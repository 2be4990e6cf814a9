#pragma once

#include <QFrame>
#include <QImage>

#include "camera/conversion.h"

namespace tessa {

/// Shows the picture that a card's image becomes with the chosen options, as large as there is
/// room for and never larger than it is.
class DownloadPreview : public QFrame {
  Q_OBJECT

 public:
  /// Both outlive the widget.
  DownloadPreview(const Strings& words, const Palettes& palettes, QWidget* parent);

  /// Converts the file at `path` once more; an empty path shows that there is none.
  void ShowFile(const QString& path, const DownloadOptions& options);
  /// The picture, empty when there is none to show.
  const QImage& Picture() const { return picture_; }

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Strings& words_;
  DownloadConversion conversion_;
  QImage picture_;
};

}  // namespace tessa
