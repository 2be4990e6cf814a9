#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <functional>

#include "core/dialogs.h"
#include "core/progress.h"

class QWidget;

namespace tessa {

/// Keeps a window alive while files are copied, moved or deleted: shows how far the run is, and
/// keeps clicks and keys away from the window, but for those that ask the run to stop: Esc, the
/// button `stop`, and closing the window. When the program is asked to quit, the run is stopped
/// first, without further questions, and the program quits afterwards.
class TransferProgress : public QObject, public Progress {
 public:
  /// All outlive it. `show` brings the window into line with the status of the run.
  TransferProgress(QWidget& window, const QWidget& stop, Dialogs& dialogs,
                   std::function<void()> show);
  ~TransferProgress() override;

  void Repaint() override;
  void Advance() override { Repaint(); }

  bool StopAsked() const { return stopAsked_; }
  /// Asks and tells by the dialogs, but not once the program is to quit.
  Dialogs& Questions() { return questions_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  class UntilQuit : public Dialogs {
   public:
    UntilQuit(const TransferProgress& owner, Dialogs& dialogs) : owner_(owner), dialogs_(dialogs) {}
    std::optional<QString> AskOpenFile(const OpenFileQuestion& question) override;
    std::optional<QString> AskSaveFile(const SaveFileQuestion& question) override;
    Answer AskYesNoCancel(const QString& text) override;
    Answer ShowMessage(const Message& message) override;
    std::optional<QString> AskText(const QString& prompt) override;

   private:
    const TransferProgress& owner_;
    Dialogs& dialogs_;
  };

  bool HasModalAbove() const;
  void AskToQuit();

  QWidget& window_;
  const QWidget& stop_;
  UntilQuit questions_;
  std::function<void()> show_;
  QElapsedTimer clock_;  // Since the window was painted last.
  bool stopAsked_ = false;
  bool quitAsked_ = false;
};

}  // namespace tessa
