#include "widgets/language_box.h"

#include <utility>

namespace tessa {

QCheckBox* AddLanguageBox(QWidget& window, std::function<void()> setLanguage) {
  auto* const box = new QCheckBox(&window);
  box->setObjectName(QStringLiteral("chkLang"));
  box->hide();
  QObject::connect(box, &QCheckBox::toggled, &window,
                   [box, setLanguage = std::move(setLanguage)](bool checked) {
                     if (checked) {
                       box->setChecked(false);
                       setLanguage();
                     }
                   });
  return box;
}

}  // namespace tessa
