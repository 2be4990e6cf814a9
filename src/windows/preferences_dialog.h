#pragma once

#include <QDialog>

#include "core/user_settings.h"
#include "open/session.h"

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace tessa {

/// Edits what Viewer2.ini holds, and the language. Saving takes everything over into the session
/// and writes it; a language that is picked shows at once, and leaving without saving undoes it.
class PreferencesDialog : public QDialog {
  Q_OBJECT

 public:
  PreferencesDialog(Session& session, UserSettings& user, QWidget* parent);

  void SetWindowLanguage();
  /// Leaves without saving.
  void reject() override;

 Q_SIGNALS:
  /// The session's words are in another language now.
  void LanguageChanged();
  /// The session's settings, palette, unit and load button are as chosen.
  void Saved();

 private:
  /// A folder and what it is shown and chosen with.
  struct Folder {
    QString Path;  // As on disk, with its final separator; empty: none.
    QLabel* Caption = nullptr;
    QLineEdit* Panel = nullptr;  // The path in capitals.
    QPushButton* Choose = nullptr;
  };

  QLabel* AddCaption(QGridLayout& layout, int row);
  void AddFolder(QGridLayout& layout, int row, const char* panelName, const char* buttonName,
                 Folder& folder);
  void AddChoices(QGridLayout& layout);
  QWidget* MakeUnitOptions();
  QWidget* MakeButtons();
  void LoadValues();
  void FillPalettes();
  void FillKinds();
  void AskForFolder(Folder& folder);
  void ShowFolder(const QString& path, Folder& folder);
  void ShowLanguage(int language);
  void SaveChanges();
  void TakeOver();
  void RestoreDefaults();

  Session& session_;
  UserSettings& user_;
  int languageAtOpen_ = 0;
  Folder source_;
  Folder target_;
  QLabel* kindCaption_ = nullptr;
  QComboBox* kinds_ = nullptr;
  QLabel* paletteCaption_ = nullptr;
  QComboBox* palettes_ = nullptr;
  QLabel* unitCaption_ = nullptr;
  QRadioButton* celsius_ = nullptr;
  QRadioButton* fahrenheit_ = nullptr;
  QLabel* languageCaption_ = nullptr;
  QComboBox* languages_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* defaults_ = nullptr;
  QPushButton* leave_ = nullptr;
};

}  // namespace tessa
