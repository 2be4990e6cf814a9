#include <QDateTime>
#include <cmath>

#include "formats/ansi_text.h"
#include "open/load_steps.h"
#include "open/loaders.h"
#include "open/read_sequence.h"
#include "open/show_frame.h"

namespace tessa {
namespace {

/// The moment that a day count from 1899-12-30 stands for. Throws StepFailure for what is no day.
QDateTime MomentOfDays(double days) {
  constexpr double kLastDay = 2958465.999999;  // The end of the year 9999.
  constexpr double kSecondsPerDay = 86400.0;
  if (!(days >= 0.0 && days <= kLastDay)) {
    throw StepFailure("the day count is no date");
  }
  const double wholeDays = std::floor(days);
  const auto seconds = static_cast<qint64>(std::nearbyint((days - wholeDays) * kSecondsPerDay));
  const QDateTime start(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC);
  return start.addDays(static_cast<qint64>(wholeDays)).addSecs(seconds);
}

void TakeMoment(Session& session) {
  OpenImage& image = session.Image;
  session.Steps.Run("time of taking", [&] {
    const QDateTime moment = MomentOfDays(image.SeqHeader.Taken);
    image.ImageDate = moment.date().toString(QStringLiteral("MM/dd/yyyy"));
    const QTime time = moment.time();
    const int hour = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
    image.ImageTime = QString::number(hour) + time.toString(QStringLiteral(":mm:ss ")) +
                      (time.hour() < 12 ? QStringLiteral("AM") : QStringLiteral("PM"));
  });
}

}  // namespace

void LoadRti(Session& session, Progress& progress) {
  OpenImage& image = session.Image;
  ViewState& view = session.View;
  ReadSequence(session, progress);
  if (image.FrameCount <= 0) {
    return;
  }
  view.Comment = QString::fromStdString(AnsiToUtf8(SeqComment(image.SeqHeader)));
  view.Memo = QString::number(image.FrameCount);
  ShowEmissivity(image, session.Words, view);
  TakeMoment(session);
  ShowLoadingText(session.Words.LangString(180, "Loading"), image, view, progress);
  Picbuf& picture = session.Buffers.Picbuf1;
  picture.FileType = Picbuf::kBmp;
  session.Steps.Run("create buffer", [&] {
    picture.CreateBuffer(0, image.SeqHeader.Height, image.SeqHeader.Width, 8);
  });
  image.CurrentFrame = 1;
  ShowFrame(false, session, progress);
  FinishRadiometricLoad(KindRti, session);
}

}  // namespace tessa
