#pragma once

#include <QObject>

class QSocketNotifier;

namespace tessa {

/// Lets the event loop end when the system asks the program to go (SIGTERM, SIGHUP, SIGINT), so
/// that what it keeps in temporary files is cleared up as at any other end. A signal that was
/// ignored when the program started stays ignored. One at a time.
class QuitSignals : public QObject {
 public:
  QuitSignals();
  ~QuitSignals() override;

 private:
  int readEnd_ = -1;
  QSocketNotifier* notifier_ = nullptr;
};

}  // namespace tessa
