#include "camera/download_ini.h"

#include <algorithm>
#include <limits>

#include "core/file_access.h"
#include "core/path_bytes.h"
#include "core/steps.h"
#include "core/units.h"
#include "core/write_file.h"

namespace tessa {
namespace {

constexpr std::uint64_t kMostBytes = 64 << 10;
constexpr int kHighestBoxValue = 2;
constexpr QChar kQuote(u'"');
constexpr QChar kBlank(u' ');
constexpr QChar kComma(u',');

bool IsLineEnd(QChar character) {
  return character == QLatin1Char('\r') || character == QLatin1Char('\n');
}

/// Takes values out of a text one after the other.
class ValueReader {
 public:
  explicit ValueReader(const QString& text) : text_(text) {}

  /// Empty when there are no more.
  QString Next() {
    SkipBlanks();
    const bool isQuoted = at_ < text_.size() && text_[at_] == kQuote;
    const qsizetype start = isQuoted ? ++at_ : at_;
    while (at_ < text_.size() && !(isQuoted ? text_[at_] == kQuote : IsEnd())) {
      ++at_;
    }
    const QString value = text_.mid(start, at_ - start);
    if (isQuoted && at_ < text_.size()) {
      ++at_;
      SkipBlanks();
    }
    SkipEnd();
    return value;
  }
  /// A number as a 16-bit integer; what is none counts as 0.
  int NextNumber() {
    try {
      const int number = RoundToInteger(ParseNumber(Next()));
      return static_cast<std::int16_t>(number) == number ? number : 0;
    } catch (const StepFailure&) {
      return 0;
    }
  }
  /// The same; what is not from 0 to `highest` leaves a control as it was, which is 0.
  int NextChoice(int highest) {
    const int number = NextNumber();
    return number < 0 || number > highest ? 0 : number;
  }

 private:
  bool IsEnd() const { return text_[at_] == kComma || IsLineEnd(text_[at_]); }
  void SkipBlanks() {
    while (at_ < text_.size() && text_[at_] == kBlank) {
      ++at_;
    }
  }
  void SkipEnd() {
    if (at_ < text_.size() && IsEnd()) {
      const bool isPair = text_[at_] == QLatin1Char('\r') && at_ + 1 < text_.size() &&
                          text_[at_ + 1] == QLatin1Char('\n');
      at_ += isPair ? 2 : 1;
    }
  }

  const QString& text_;
  qsizetype at_ = 0;
};

/// `value` as it stands, or in quotes where only that gives it back. Where neither does it is
/// written up to the comma or line end that would cut it anyway, so that the lines after it keep
/// their places; what would keep them from being read is left out.
QString TextLine(const QString& value) {
  const auto isReadAs = [](const QString& line, const QString& wanted) {
    const QString text = line + QLatin1String("\r\n1\r\n");
    ValueReader reader(text);
    return reader.Next() == wanted && reader.NextNumber() == 1;
  };
  const QString quoted = kQuote + value + kQuote;
  if (isReadAs(value, value)) {
    return value;
  }
  if (isReadAs(quoted, value)) {
    return quoted;
  }
  const auto end = std::find_if(value.begin(), value.end(), [](QChar character) {
    return character == kComma || IsLineEnd(character);
  });
  const QString cut = value.left(end - value.begin());
  return isReadAs(cut, cut) ? cut : QString();
}

/// A blank stands where a minus sign would be.
QString NumberLine(int number) {
  return (number < 0 ? QString() : QString(kBlank)) + QString::number(number) + kBlank;
}

}  // namespace

DownloadOptions ParseDownloadIni(const QByteArray& file, const QString& programFolder) {
  const QString text = PathFromBytes(file);
  ValueReader reader(text);
  DownloadOptions options;
  options.TargetPath = reader.Next();
  if (options.TargetPath.isEmpty()) {
    options.TargetPath = programFolder;
  }
  options.PaletteIndex = reader.NextNumber();
  options.Sit = reader.NextChoice(kHighestBoxValue);
  options.Bmp = reader.NextChoice(kHighestBoxValue);
  options.Jpeg = reader.NextChoice(kHighestBoxValue);
  options.JpegQuality = reader.Next();
  options.Scale = reader.NextChoice(DownloadOptions::kCustomScale);
  options.Unit = reader.NextChoice(1);
  options.MinTemp = reader.Next();
  options.MaxTemp = reader.Next();
  options.PaletteBar = reader.NextChoice(kHighestBoxValue);
  for (int& box : options.Overlay) {
    box = reader.NextChoice(kHighestBoxValue);
  }
  return options;
}

QByteArray DownloadIniText(const DownloadOptions& options) {
  QStringList lines = {TextLine(options.TargetPath), NumberLine(options.PaletteIndex),
                       NumberLine(options.Sit),      NumberLine(options.Bmp),
                       NumberLine(options.Jpeg),     TextLine(options.JpegQuality)};
  // A choice without a member ticked has no line; what follows moves up.
  if (options.Scale >= 0 && options.Scale <= DownloadOptions::kCustomScale) {
    lines += NumberLine(options.Scale);
  }
  if (options.Unit == 0 || options.Unit == 1) {
    lines += NumberLine(options.Unit);
  }
  lines += {TextLine(options.MinTemp), TextLine(options.MaxTemp), NumberLine(options.PaletteBar)};
  for (const int box : options.Overlay) {
    lines += NumberLine(box);
  }
  return PathToBytes(lines.join(QLatin1String("\r\n")) + QLatin1String("\r\n"));
}

DownloadOptions dwnGetUserInfo(const ApplicationFolder& folder) {
  Problems faults;
  const auto file = ReadFileStart(folder.FindForReading(kDownloadIniName), kMostBytes, faults);
  const QByteArray bytes = file ? QByteArray(reinterpret_cast<const char*>(file->Data.data()),
                                             static_cast<qsizetype>(file->Data.size()))
                                : QByteArray();
  return ParseDownloadIni(bytes, folder.Path());
}

bool dwnSaveUserInfo(const DownloadOptions& options, const ApplicationFolder& folder) {
  const QByteArray text = DownloadIniText(options);
  try {
    MakeFolders(folder.Path());
    WriteWholeFile(JoinPath(folder.Path(), kDownloadIniName),
                   ByteSpan(reinterpret_cast<const std::uint8_t*>(text.constData()),
                            static_cast<std::size_t>(text.size())),
                   Overwrite::kReplace);
    return true;
  } catch (const StepFailure&) {
    return false;
  }
}

}  // namespace tessa
