#include "widgets/viewer_style.h"

#include <QGuiApplication>
#include <QPalette>

#include "widgets/icons.h"

namespace tessa {

QIcon ViewerStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                                const QWidget* widget) const {
  const bool isAcross = which == SP_ToolBarHorizontalExtensionButton;
  if (isAcross || which == SP_ToolBarVerticalExtensionButton) {
    return ToolIcon(isAcross ? QStringLiteral("more_right") : QStringLiteral("more_below"),
                    QGuiApplication::palette().color(QPalette::WindowText));
  }
  return QProxyStyle::standardIcon(which, option, widget);
}

}  // namespace tessa
