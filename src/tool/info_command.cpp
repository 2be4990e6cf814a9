#include "tool/info_command.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "core/plain_line.h"
#include "core/units.h"
#include "export/image_export.h"
#include "export/image_report.h"
#include "open/load_image.h"
#include "tool/sound_command.h"
#include "tool/streams.h"

namespace tessa {
namespace {

/// Time and extremes of every frame that can be read.
QJsonArray FrameList(Session& session) {
  QJsonArray frames;
  const OpenImage& image = session.Image;
  for (int frame = 1; frame <= FrameSlots(image); ++frame) {
    try {
      ShowFrameForExport(frame, session);
    } catch (const StepFailure&) {
      continue;
    }
    const TemperaturePair extremes = GridExtremes(image);
    frames.append(QJsonObject{{QStringLiteral("Frame"), frame},
                              {QStringLiteral("ImageDate"), image.ImageDate},
                              {QStringLiteral("ImageTime"), image.ImageTime},
                              {QStringLiteral("TempMin"), ShortestNumber(extremes.Minimum)},
                              {QStringLiteral("TempMax"), ShortestNumber(extremes.Maximum)}});
  }
  return frames;
}

void PrintFrames(Session& session) {
  for (const QJsonValue& value : FrameList(session)) {
    const QJsonObject frame = value.toObject();
    const auto text = [&](const char* name) { return frame.value(QLatin1String(name)); };
    PrintOut(
        QStringLiteral("  Frame %1  %2 %3  %4 to %5 \u00B0C\n")
            .arg(text("Frame").toInt(), -5)
            .arg(PlainLine(text("ImageDate").toString()), PlainLine(text("ImageTime").toString()),
                 FormatTenths(text("TempMin").toDouble()), FormatTenths(text("TempMax").toDouble()))
            .toUtf8());
  }
}

}  // namespace

int RunInfo(const InfoCall& call) {
  int status = kToolDone;
  QJsonArray reports;
  Progress progress;
  for (const std::string& argument : call.Files) {
    const QString path = FromArgument(argument);
    Session session(OwnFolder());
    // Colours do not matter here, so no palettes are read.
    PrepareForExport({}, {}, session);
    OpenPath(path, session, progress);
    const SoundReport sound = ReportSound(session);
    if (const Problem* const reason = FindNoImage(session.Faults)) {
      PrintError(path, reason->Text);
      status = kToolFailed;
    } else if (call.Json) {
      QJsonObject report = ReportAsJson(session);
      for (auto field = sound.Fields.begin(); field != sound.Fields.end(); ++field) {
        report.insert(field.key(), field.value());
      }
      if (call.Frames) {
        report.insert(QStringLiteral("Frames"), FrameList(session));
      }
      reports.append(report);
    } else {
      PrintOut(ReportAsText(session, sound.Words).toUtf8());
      if (call.Frames) {
        PrintFrames(session);
      }
    }
  }
  if (call.Json && !reports.isEmpty()) {
    PrintOut(PlainJson(call.Files.size() == 1 ? QJsonDocument(reports[0].toObject()).toJson()
                                              : QJsonDocument(reports).toJson()));
  }
  return status;
}

}  // namespace tessa
