#include "core/date_time_text.h"
#include "formats/ansi_text.h"
#include "open/load_steps.h"
#include "open/loaders.h"
#include "open/read_sequence.h"
#include "open/show_frame.h"

namespace tessa {
namespace {

void TakeMoment(Session& session) {
  OpenImage& image = session.Image;
  session.Steps.Run("time of taking", [&] {
    const auto moment = MomentOfDays(image.SeqHeader.Taken);
    if (!moment) {
      throw StepFailure("the day count is no date");
    }
    image.ImageDate = moment->date().toString(QStringLiteral("MM/dd/yyyy"));
    const QTime time = moment->time();
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
