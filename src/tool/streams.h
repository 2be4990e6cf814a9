#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <string>

#include "core/application_folder.h"
#include "view/palettes.h"

namespace tessa {

// What the commands of the command-line tool share.

// Exit statuses.
inline constexpr int kToolDone = 0;
inline constexpr int kToolFailed = 1;     // Something could not be read or written.
inline constexpr int kToolWrongCall = 2;  // The arguments make no sense.

/// A path or text from the command line, with every byte of it (core/path_bytes.h).
QString FromArgument(const std::string& argument);

/// Bytes on standard output, as they are.
void PrintOut(const QByteArray& text);

/// One harmless line on standard output.
void PrintLine(const QString& line);

/// To be called at the end of every command: `status`, or kToolFailed after a report when standard
/// output did not take everything.
int FinishOutput(int status);

/// One line on standard error: what went wrong with which file. Harmless for a terminal, whatever
/// stands in the path and the reason. A reason that begins with the path is left to name it.
void PrintError(const QString& path, const std::string& reason);
/// The same without a file.
void PrintError(const std::string& reason);

/// The folder of the running program.
ApplicationFolder OwnFolder();

/// The palettes beside the program, or none after a report when they cannot be read and `needed`.
std::optional<Palettes> ReadToolPalettes(bool needed);

/// True for the endings of files whose content depends on a palette.
bool NeedsPalette(const QString& ending);

/// From now on Ctrl+C, the end of the terminal and a request to end stop a run after the file that
/// is being written, so that only whole files are left. A signal that the caller has the program
/// ignore stays ignored.
void StopAfterThisFile();
/// True once a signal came.
bool Interrupted();
/// 128 and the number of the signal, as a shell would report it.
int InterruptedStatus();

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

}  // namespace tessa
