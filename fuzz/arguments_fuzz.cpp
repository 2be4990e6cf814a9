#include <QStringList>
#include <algorithm>
#include <vector>

#include "export/image_export.h"
#include "open/command_line.h"
#include "require.h"
#include "sequence/convert_frames.h"
#include "tool/frames_command.h"
#include "view/palettes.h"

/// The lines of the input are arguments; each goes to every reader of one.
FUZZ_ENTRY {
  constexpr int kMostFrames = 32767;
  const QStringList arguments =
      QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size))
          .split(QLatin1Char('\n'));
  std::vector<QByteArray> texts;
  for (const QString& argument : arguments) {
    texts.push_back(argument.toUtf8());
  }
  std::vector<const char*> pointers;
  for (const QByteArray& text : texts) {
    pointers.push_back(text.constData());
  }
  const QString file = PendingFileFromArguments(pointers);
  Require(file.size() <= 3 * static_cast<qsizetype>(size), "its name comes from the arguments");
  for (const QString& argument : arguments) {
    const int palette = FindPalette(argument);
    Require(palette >= -1 && palette < kPaletteCount, "a palette of the list or none");
    ParseExportRange(argument);
    Require(!IsUsablePrefix(argument) || !argument.contains(QLatin1Char('/')),
            "a prefix names files of one folder");
    if (const auto frames = ParseFrames(argument, kMostFrames)) {
      Require(std::is_sorted(frames->begin(), frames->end()) && frames->size() <= kMostFrames,
              "frames stand in order and none twice");
      Require(frames->empty() || (frames->front() >= 1 && frames->back() <= kMostFrames),
              "frames are those that there are");
    }
  }
}
