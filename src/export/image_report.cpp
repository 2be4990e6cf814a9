#include "export/image_report.h"

#include <QJsonArray>
#include <cmath>

#include "core/plain_line.h"
#include "core/units.h"
#include "formats/number_text.h"
#include "view/range_control.h"

namespace tessa {
namespace {

QJsonValue Number(float value) {
  return ShortestNumber(value);
}

QJsonValue Number(double value) {
  return std::isfinite(value) ? QJsonValue(value) : QJsonValue(QJsonValue::Null);
}

QString FromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QJsonObject RangeControl(const RangeSlider& slider) {
  return {{QStringLiteral("ScaleMaxLimit"), Number(slider.ScaleMaxLimit())},
          {QStringLiteral("ScaleMinLimit"), Number(slider.ScaleMinLimit())},
          {QStringLiteral("ImageMarkMax"), Number(slider.MarkMaximum())},
          {QStringLiteral("ImageMarkMin"), Number(slider.MarkMinimum())},
          {QStringLiteral("RangeMaxValue"), Number(slider.RangeMaxValue())},
          {QStringLiteral("RangeMinValue"), Number(slider.RangeMinValue())}};
}

QJsonArray ProblemList(const Problems& problems) {
  QJsonArray list;
  for (const Problem& problem : problems) {
    list.append(QJsonObject{{QStringLiteral("kind"), FromUtf8(ProblemKindWord(problem.Kind))},
                            {QStringLiteral("offset"), static_cast<qint64>(problem.Offset)},
                            {QStringLiteral("field"), FromUtf8(problem.Field)},
                            {QStringLiteral("text"), FromUtf8(problem.Text)}});
  }
  return list;
}

QString KindName(const OpenImage& image) {
  return KindWord(image.ImageKind).trimmed();
}

/// Lines of "label   value" under each other; lines without a value are left out. Values come out
/// of files, so none of them can command a terminal or forge a line.
class Listing {
 public:
  void Add(const char* label, const QString& value) {
    if (!value.isEmpty()) {
      text_ +=
          QStringLiteral("  %1%2\n").arg(QString::fromLatin1(label), -16).arg(PlainLine(value));
    }
  }
  QString Take() { return text_; }

 private:
  QString text_;
};

}  // namespace

QJsonValue ShortestNumber(float value) {
  return std::isfinite(value) ? QJsonValue(ParseLeadingNumber(FormatShortest(value)))
                              : QJsonValue(QJsonValue::Null);
}

QJsonObject ReportAsJson(const Session& session) {
  const OpenImage& image = session.Image;
  QJsonObject report;
  const auto put = [&report](const char* name, const QJsonValue& value) {
    report.insert(QString::fromLatin1(name), value);
  };
  put("CurrentFile", image.CurrentFile);
  put("CurrentFileName", image.CurrentFileName);
  put("Path", image.CurrentFilePath);
  put("ImageKind", image.ImageKind);
  put("Kind", KindName(image));
  put("HasTemperature", image.HasTemperature);
  put("PreviousKindIndex", image.PreviousKindIndex);
  put("BufferWidth", image.BufferWidth);
  put("BufferHeight", image.BufferHeight);
  put("HeaderWidth", image.HeaderWidth);
  put("HeaderHeight", image.HeaderHeight);
  put("ImageWidth", image.ImageWidth);
  put("ImageHeight", image.ImageHeight);
  put("TempMin", Number(image.TempMin));
  put("TempMax", Number(image.TempMax));
  put("ScaleMin", Number(image.ScaleMin));
  put("ScaleMax", Number(image.ScaleMax));
  put("SitTempMin", Number(image.SitTempMin));
  put("SitTempMax", Number(image.SitTempMax));
  put("SitScaleMin", Number(image.SitScaleMin));
  put("SitScaleMax", Number(image.SitScaleMax));
  put("CalRangeMin", Number(image.CalRangeMin));
  put("CalRangeMax", Number(image.CalRangeMax));
  put("Emissivity", Number(image.Emissivity));
  put("PixelOffset", Number(image.PixelOffset));
  put("PixelGain", Number(image.PixelGain));
  put("PaletteIndexLow", image.PaletteIndexLow);
  put("PaletteIndexHigh", image.PaletteIndexHigh);
  put("PaletteTempLow", Number(image.PaletteTempLow));
  put("PaletteTempHigh", Number(image.PaletteTempHigh));
  put("PaletteTempAt0", Number(image.PaletteTempAt0));
  put("PaletteTempAt255", Number(image.PaletteTempAt255));
  put("ScaleHighText", image.ScaleHighText);
  put("ScaleLowText", image.ScaleLowText);
  put("DisplayUnits", QString(QLatin1Char(image.DisplayUnits)));
  put("FileUnits", QString(QLatin1Char(image.FileUnits)));
  put("ImageDate", image.ImageDate);
  put("ImageTime", image.ImageTime);
  put("Comment", session.View.Comment);
  put("Memo", session.View.Memo);
  put("FrameCount", image.FrameCount);
  put("CurrentFrame", image.CurrentFrame);
  put("SeqVersion", Number(image.SeqVersion));
  put("SeqFrameStride", static_cast<qint64>(image.SeqFrameStride));
  put("SeqDepth", image.SeqDepth);
  QJsonArray frameTimes;
  for (const QString& time : image.SeqFrameTimes) {
    frameTimes.append(time);
  }
  put("SeqFrameTimes", frameTimes);
  put("HasVisibleImage", image.HasVisibleImage);
  put("SoundFile", image.SoundFile);
  put("SoundFileTitle", image.SoundFileTitle);
  put("SoundEmbedded", image.SoundEmbedded);
  put("CanEmbedSound", image.CanEmbedSound);
  put("SitFileLength", static_cast<qint64>(image.SitFileLength));
  put("SitVersion", Number(image.SitVersion));
  put("IsLegacy8Bit", image.IsLegacy8Bit);
  put("PaletteReversed", image.PaletteReversed);
  QJsonArray status;
  for (std::size_t i = 1; i <= ViewState::kStatusPanels; ++i) {
    status.append(session.View.StatusPanel[i]);
  }
  put("Status", status);
  put("RangeControl", RangeControl(session.Range));
  put("Problems", ProblemList(session.Faults));
  return report;
}

QString ReportAsText(const Session& session, const QString& sound) {
  const OpenImage& image = session.Image;
  const QString unit = QStringLiteral(" \u00B0") + QLatin1Char(image.DisplayUnits);
  const auto range = [&](const TemperaturePair& pair) {
    return image.HasTemperature
               ? TemperatureText(static_cast<double>(pair.Minimum), image.DisplayUnits) +
                     QStringLiteral(" to ") +
                     TemperatureText(static_cast<double>(pair.Maximum), image.DisplayUnits) + unit
               : QString();
  };
  Listing listing;
  listing.Add("Kind", KindName(image));
  listing.Add("Size", QStringLiteral("%1 x %2").arg(image.ImageWidth).arg(image.ImageHeight));
  listing.Add("Taken", (image.ImageDate + QLatin1Char(' ') + image.ImageTime).trimmed());
  listing.Add("Temperatures", range(ImageExtremes(image)));
  listing.Add("Stored scale", range(StoredScale(image)));
  if (!session.View.StatusPanel[5].isEmpty()) {
    listing.Add("Measuring range", range({image.CalRangeMin, image.CalRangeMax}));
  }
  if (!session.View.StatusPanel[4].isEmpty()) {
    listing.Add("Emissivity", FormatHundredths(static_cast<double>(image.Emissivity)));
  }
  if (image.FrameCount > 0) {
    listing.Add("Frames", QString::number(image.FrameCount));
  }
  if (image.HasVisibleImage) {
    listing.Add("Photograph", QStringLiteral("visible-light picture inside"));
  }
  listing.Add("Sound", sound.isEmpty() ? image.SoundFile : sound);
  listing.Add("Comment", session.View.Comment.trimmed());
  listing.Add("Memo", session.View.Memo.trimmed());
  for (const Problem& problem : session.Faults) {
    listing.Add("Problem",
                FromUtf8(problem.Text) +
                    QStringLiteral(" (%1, %2, byte %3)")
                        .arg(FromUtf8(ProblemKindWord(problem.Kind)), FromUtf8(problem.Field))
                        .arg(problem.Offset));
  }
  return PlainLine(image.CurrentFilePath) + QLatin1Char('\n') + listing.Take();
}

}  // namespace tessa
