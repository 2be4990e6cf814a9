#pragma once

#include <QProxyStyle>

namespace tessa {

/// The desktop's own style, but for the arrow of menus and tool bars that are too narrow: it is
/// drawn from the program's own set. Qt's is a PNG file, for which every image plug-in of the
/// system would be loaded before the first window.
class ViewerStyle : public QProxyStyle {
 public:
  QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                     const QWidget* widget) const override;
};

}  // namespace tessa
