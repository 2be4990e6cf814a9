#include "windows/quit_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <array>
#include <csignal>

namespace tessa {
namespace {

constexpr std::array<int, 3> kSignals = {SIGTERM, SIGHUP, SIGINT};

/// A signal can leave its mark nowhere else: the end of a pipe that the event loop reads.
volatile std::sig_atomic_t writeEnd = -1;

void LeaveMark(int /*signal*/) {
  const char mark = 1;
  static_cast<void>(!::write(writeEnd, &mark, 1));
}

}  // namespace

QuitSignals::QuitSignals() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    return;
  }
  readEnd_ = ends[0];
  writeEnd = ends[1];
  notifier_ = new QSocketNotifier(readEnd_, QSocketNotifier::Read, this);
  connect(notifier_, &QSocketNotifier::activated, this, [this] {
    notifier_->setEnabled(false);
    QCoreApplication::quit();
  });
  for (const int signal : kSignals) {
    struct sigaction present {};
    if (::sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN) {
      std::signal(signal, LeaveMark);
    }
  }
}

QuitSignals::~QuitSignals() {
  if (readEnd_ < 0) {
    return;
  }
  for (const int signal : kSignals) {
    struct sigaction present {};
    if (::sigaction(signal, nullptr, &present) == 0 && present.sa_handler == LeaveMark) {
      std::signal(signal, SIG_DFL);
    }
  }
  ::close(writeEnd);
  ::close(readEnd_);
  writeEnd = -1;
}

}  // namespace tessa
