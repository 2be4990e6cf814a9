#pragma once

#include <QDialog>

#include "browser/image_info.h"
#include "core/language_strings.h"

class QFormLayout;
class QPlainTextEdit;

namespace tessa {

/// frmImageInfo: what is known of an image. The texts can be typed in, but nothing typed reaches
/// the file.
class ImageInfoDialog : public QDialog {
  Q_OBJECT

 public:
  ImageInfoDialog(const ImageInfo& info, const Strings& words, QWidget* parent);

 private:
  void AddLine(const char* captionName, const QString& caption, const char* name,
               const QString& text);
  QWidget* MakeText(const char* frame, const QString& title, const char* name, const QString& text,
                    bool readOnly, int limit);
  QWidget* MakePhotograph(const LoadedPicture& picture, const QString& title);

  QFormLayout* lines_;
};

}  // namespace tessa
