#include "tool/streams.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <csignal>
#include <cstdio>
#include <filesystem>

namespace tessa {
namespace {

/// A signal can leave its mark nowhere else.
volatile std::sig_atomic_t interruptSeen = 0;

}  // namespace

void StopAfterThisFile() {
  std::signal(SIGINT, [](int /*signal*/) { interruptSeen = 1; });
}

bool Interrupted() {
  return interruptSeen != 0;
}

QString FromArgument(const std::string& argument) {
  return QFile::decodeName(QByteArray::fromStdString(argument));
}

void PrintOut(const QByteArray& text) {
  std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
}

void PrintError(const QString& path, const std::string& reason) {
  std::fprintf(stderr, "tessatool: %s: %s\n", QFile::encodeName(path).constData(), reason.c_str());
}

ApplicationFolder OwnFolder() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return ApplicationFolder::ForExecutable(FromArgument(executable.string()));
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

bool IsSameFile(const QString& first, const QString& second) {
  struct stat firstStatus {};
  struct stat secondStatus {};
  return ::stat(QFile::encodeName(first).constData(), &firstStatus) == 0 &&
         ::stat(QFile::encodeName(second).constData(), &secondStatus) == 0 &&
         firstStatus.st_dev == secondStatus.st_dev && firstStatus.st_ino == secondStatus.st_ino;
}

}  // namespace tessa
