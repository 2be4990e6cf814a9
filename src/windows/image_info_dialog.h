#pragma once

#include <QDialog>
#include <functional>

#include "browser/image_info.h"
#include "browser/image_note.h"
#include "core/language_strings.h"

class QFormLayout;
class QPlainTextEdit;
class QPushButton;

namespace tessa {

/// frmImageInfo: what is known of an image. The texts can be typed in, but nothing typed reaches
/// the file, since the button "Save" is kept hidden.
class ImageInfoDialog : public QDialog {
  Q_OBJECT

 public:
  ImageInfoDialog(const ImageInfo& info, const Strings& words, QWidget* parent);

  /// What "Save" does with the two texts.
  std::function<void(const ImageNote&)> Save;

 private:
  void AddLine(const char* captionName, const QString& caption, const char* name,
               const QString& text);
  QWidget* MakeText(const char* frame, const QString& title, const char* name, const QString& text,
                    bool readOnly, int limit);
  QWidget* MakePhotograph(const LoadedPicture& picture, const QString& title);
  QPushButton* MakeSaveButton(const QString& text);
  void SaveTexts();

  QFormLayout* lines_;
  QPlainTextEdit* comment_ = nullptr;
  QPlainTextEdit* memo_ = nullptr;
};

}  // namespace tessa
