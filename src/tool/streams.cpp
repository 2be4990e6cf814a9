#include "tool/streams.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/plain_line.h"
#include "core/view_state.h"

namespace tessa {
namespace {

/// A signal can leave its mark nowhere else.
volatile std::sig_atomic_t signalSeen = 0;

/// Why standard output did not take something; 0 while it did.
int outputError = 0;

}  // namespace

void StopAfterThisFile() {
  for (const int number : std::array{SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    if (::sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) {
      continue;
    }
    action = {};
    action.sa_handler = [](int seen) { signalSeen = seen; };
    action.sa_flags = SA_RESTART;
    ::sigaction(number, &action, nullptr);
  }
}

bool Interrupted() {
  return signalSeen != 0;
}

int InterruptedStatus() {
  return 128 + static_cast<int>(signalSeen);
}

QString FromArgument(const std::string& argument) {
  return PathFromBytes(QByteArray::fromStdString(argument));
}

void PrintOut(const QByteArray& text) {
  const auto size = static_cast<std::size_t>(text.size());
  if (std::fwrite(text.constData(), 1, size, stdout) != size && outputError == 0) {
    outputError = errno;
  }
}

void PrintLine(const QString& line) {
  PrintOut(PlainUtf8(line).c_str() + QByteArray("\n"));
}

int FinishOutput(int status) {
  if (std::fflush(stdout) != 0 && outputError == 0) {
    outputError = errno;
  }
  if (outputError == 0 && std::ferror(stdout) == 0) {
    return status;
  }
  PrintError("standard output cannot be written: " +
             SystemErrorText(outputError == 0 ? EIO : outputError));
  return status == kToolDone ? kToolFailed : status;
}

void PrintError(const QString& path, const std::string& reason) {
  const std::string name = PlainUtf8(path);
  const std::string line = PlainLine(reason);
  const bool namesIt = line.starts_with(name + ' ') || line.starts_with(name + ':');
  PrintError(namesIt ? line : name + ": " + line);
}

void PrintError(const std::string& reason) {
  std::fprintf(stderr, "tessatool: %s\n", PlainLine(reason).c_str());
}

ApplicationFolder OwnFolder() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return ApplicationFolder::ForExecutable(FromArgument(executable.string()));
}

std::optional<Palettes> ReadToolPalettes(bool needed) {
  Palettes palettes;
  ViewState unused;
  Problems faults;
  LoadPalettes(palettes, unused, OwnFolder(), faults);
  if (needed && !faults.empty()) {
    PrintError(QStringLiteral("palette.dta"), faults.front().Text);
    return std::nullopt;
  }
  return palettes;
}

bool NeedsPalette(const QString& ending) {
  return ending != QLatin1String("csv") && ending != QLatin1String("tif");
}

ProgressLine::ProgressLine(std::size_t total)
    : total_(total), shown_(total > 1 && ::isatty(STDERR_FILENO) == 1) {}

void ProgressLine::Show(std::size_t done) {
  if (shown_) {
    std::fprintf(stderr, "\r%zu of %zu", done, total_);
  }
}

void ProgressLine::Clear() {
  if (shown_) {
    std::fputs("\r\033[K", stderr);
  }
}

}  // namespace tessa
