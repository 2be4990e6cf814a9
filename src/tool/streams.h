#pragma once

#include <QByteArray>
#include <QString>
#include <string>

#include "core/application_folder.h"

namespace tessa {

// What the commands of the command-line tool share.

// Exit statuses.
inline constexpr int kToolDone = 0;
inline constexpr int kToolFailed = 1;     // Something could not be read or written.
inline constexpr int kToolWrongCall = 2;  // The arguments make no sense.
inline constexpr int kToolInterrupted = 130;

/// A path or text from the command line.
QString FromArgument(const std::string& argument);

void PrintOut(const QByteArray& text);

/// One line on standard error: what went wrong with which file.
void PrintError(const QString& path, const std::string& reason);

/// The folder of the running program.
ApplicationFolder OwnFolder();

/// From now on Ctrl+C ends a run after the file that is being written, so that only whole files are
/// left, instead of ending the process at once.
void StopAfterThisFile();
/// True once Ctrl+C was pressed.
bool Interrupted();

/// The one line that tells how far a long run is. Shown on terminals only.
class ProgressLine {
 public:
  explicit ProgressLine(std::size_t total);
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine() { Clear(); }

  void Show(std::size_t done);
  /// Makes room for a line of its own.
  void Clear();

 private:
  std::size_t total_;
  bool shown_;
};

/// True when both paths lead to the same existing file.
bool IsSameFile(const QString& first, const QString& second);

}  // namespace tessa
