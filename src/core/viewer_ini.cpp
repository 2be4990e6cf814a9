#include "core/viewer_ini.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/steps.h"
#include "core/units.h"

namespace tessa {
namespace {

constexpr int kHighestKind = 6;
constexpr int kHighestPalette = 10;
constexpr std::uint64_t kMostBytes = 64 << 10;

/// A line as a whole number; what fits no integer counts as 0.
int WholeNumber(const QString& line) {
  try {
    return RoundToInteger(ParseNumber(line));
  } catch (const StepFailure&) {
    return 0;
  }
}

QString NumberLine(int number) {
  return QLatin1Char(' ') + QString::number(number) + QLatin1Char(' ');
}

}  // namespace

Settings ParseViewerIni(const QStringList& lines) {
  Settings settings;
  settings.LastFolder = lines.value(0);
  settings.TargetFolder = lines.value(1);
  settings.DefaultKind = std::clamp(WholeNumber(lines.value(2)), 0, kHighestKind);
  const int palette = WholeNumber(lines.value(3));
  settings.DefaultPalette = palette > kHighestPalette ? 0 : palette;
  settings.DefaultUnits = lines.value(4) == QLatin1String("C") ? 'C' : 'F';
  return settings;
}

QString ViewerIniText(const Settings& settings) {
  // A name with a line break in it would push the lines after it out of their places.
  const auto path = [](const QString& folder) {
    return folder.contains(QLatin1Char('\n')) ? QString() : folder;
  };
  const QStringList lines = {path(settings.LastFolder), path(settings.TargetFolder),
                             NumberLine(settings.DefaultKind), NumberLine(settings.DefaultPalette),
                             QString(QLatin1Char(settings.DefaultUnits))};
  return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

Settings ReadViewerIni(const QString& path) {
  Problems faults;
  const auto file = ReadFileStart(path, kMostBytes, faults);
  if (!file) {
    return ParseViewerIni({});
  }
  // Folders may be named by bytes that are no UTF-8.
  QString text = PathFromBytes(QByteArray(reinterpret_cast<const char*>(file->Data.data()),
                                          static_cast<qsizetype>(file->Data.size())));
  if (text.startsWith(QChar::ByteOrderMark)) {
    text.remove(0, 1);
  }
  QStringList lines = text.split(QLatin1Char('\n'));
  for (QString& line : lines) {
    if (line.endsWith(QLatin1Char('\r'))) {
      line.chop(1);
    }
  }
  return ParseViewerIni(lines);
}

void WriteViewerIni(const QString& path, const Settings& settings) {
  const QByteArray text = PathToBytes(ViewerIniText(settings));
  WriteWholeFile(path,
                 ByteSpan(reinterpret_cast<const std::uint8_t*>(text.constData()),
                          static_cast<std::size_t>(text.size())),
                 Overwrite::kReplace);
}

}  // namespace tessa
