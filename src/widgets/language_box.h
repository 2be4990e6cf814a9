#pragma once

#include <QCheckBox>
#include <functional>

namespace tessa {

/// The never-visible box by which other windows tell `window` of a change of language: setting it
/// clears it and runs `setLanguage`. Belongs to the window.
QCheckBox* AddLanguageBox(QWidget& window, std::function<void()> setLanguage);

}  // namespace tessa
