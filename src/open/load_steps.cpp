#include "open/load_steps.h"

#include "core/units.h"
#include "view/range_control.h"

namespace tessa {

QString LoadButtonTip(const OpenImage& image, const Strings& strings) {
  return strings.LangString(179, "Load Image") + QLatin1Char(' ') + KindWord(image.OfferedKind()) +
         strings.LangString(177, "Images");
}

void ShowCalibratedRange(const OpenImage& image, const Strings& strings, ViewState& view) {
  view.StatusPanel[5] = CalibratedRangeText(image, strings);
}

void ShowEmissivity(const OpenImage& image, const Strings& strings, ViewState& view) {
  view.StatusPanel[4] = strings.LangString(160, "Emissivity") + QStringLiteral(": ") +
                        FormatHundredths(static_cast<double>(image.Emissivity));
}

void ShowLoadingText(const QString& loadingWord, const OpenImage& image, ViewState& view,
                     Progress& progress) {
  view.LoadingText = loadingWord + QLatin1Char(' ') + image.CurrentFile.trimmed();
  view.LoadingTextVisible = true;
  progress.Repaint();
}

void FinishRadiometricLoad(ImageKindValue kind, Session& session) {
  OpenImage& image = session.Image;
  image.HasTemperature = true;
  session.View.RangeToggleVisible = true;
  ShowCalibratedRange(image, session.Words, session.View);
  // The pair of extremes and scale is that of the new kind, which is only stored at the end.
  const bool isSit = kind == KindSit;
  InitRangeControl(isSit ? TemperaturePair{image.SitTempMin, image.SitTempMax}
                         : TemperaturePair{image.TempMin, image.TempMax},
                   isSit ? TemperaturePair{image.SitScaleMin, image.SitScaleMax}
                         : TemperaturePair{image.ScaleMin, image.ScaleMax},
                   image.DisplayUnits, session.Range, session.View);
  image.ImageKind = kind;
}

QString FrameText(const OpenImage& image, const Strings& strings) {
  return QString::number(image.CurrentFrame) + QLatin1Char(' ') + strings.LangString(199, "of") +
         QLatin1Char(' ') + QString::number(image.FrameCount);
}

void TakeBufferSize(const Picbuf& buffer, OpenImage& image) {
  image.ImageWidth = buffer.BufWidth();
  image.ImageHeight = buffer.BufHeight();
}

void InstallPalette(Session& session) {
  for (Picbuf* buffer :
       {&session.Buffers.Picbuf1, &session.Buffers.PicBuf2, &session.Buffers.Picbuf7}) {
    buffer->CreatePalette(session.Palettes.CurrentPalette);
  }
}

}  // namespace tessa
