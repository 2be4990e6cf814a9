// The part of the conversion that puts the picture together.

#include <algorithm>
#include <array>

#include "camera/conversion.h"
#include "core/units.h"

namespace tessa {
namespace {

// Pixels of the drawing, from the right edge of the thermal picture.
constexpr int kBarLeft = 5;
constexpr int kBarWidth = 15;
constexpr int kTickLeft = 20;
constexpr int kLabelLeft = 25;
constexpr int kUnitWidth = 14;
constexpr int kVisibleGap = 5;
constexpr int kMinorTicks = 3;
/// Room around the lines of the text band.
constexpr int kBandMargin = 2;

void Select(Picbuf& buffer, double left, double top, double width, double height) {
  buffer.SelLeft = RoundToInteger(left);
  buffer.SelTop = RoundToInteger(top);
  buffer.SelWidth = RoundToInteger(width);
  buffer.SelHeight = RoundToInteger(height);
}

/// A number of the bar, with the blank that ends it.
QString LabelText(double value) {
  return FormatTenths(value) + QLatin1Char(' ');
}

/// The palette bar with its labels, drawn right of the thermal picture.
struct Bar {
  Picbuf& Target;
  StepLog& Steps;
  int PictureWidth;
  int PictureHeight;
  int Behind;  // Columns right of the labels.
  int TextHeight;

  void Draw(Picbuf& barPicture, double lo, double hi, char unit) {
    const double height = RoundToInteger(PictureHeight - TextHeight - TextHeight / 2.0);
    const double top = TextHeight / 2.0 - 2.0;
    const double half = 2.0;
    Steps.Run("palette bar", [&] {
      Select(Target, PictureWidth + kBarLeft, top, kBarWidth, height - 2);
      Select(barPicture, 0, 0, Divide(barPicture.BufHeight(), height) * kBarWidth,
             barPicture.BufHeight());
      Target.CopyFrom(true, barPicture, true);
    });
    Steps.Run("frame of the palette bar", [&] {
      Target.ForeColor = 0;
      Select(Target, PictureWidth + kBarLeft - 1, top - 1, kBarWidth + 1, height - 2);
      Target.DrawSelFrame();
    });
    Target.TextAlign = 1;
    Target.TextOptionA = 0;
    Target.TextOptionB = 0;
    const double mid = (hi - lo) / half + lo;
    const int middle = RoundToInteger(height / half + top - 1);
    const int bottom = RoundToInteger(height - 1 + RoundToInteger(top) - 1 - 1);
    Label(top, 0.0, hi);
    Label(middle, middle - TextHeight / half, mid);
    Label(bottom, bottom - TextHeight / half, lo);
    MinorLabels(bottom, middle, lo, mid);
    MinorLabels(middle, top, mid, hi);
    Steps.Run("unit of the palette bar", [&] {
      Target.TextAlign = 2;
      Select(Target, PictureWidth + kBarLeft, PictureHeight - TextHeight + 1, kUnitWidth,
             TextHeight);
      Target.Text = unit == 'C' ? QStringLiteral("\u00B0C") : QStringLiteral("\u00B0F");
      Target.DrawSelText();
    });
    Target.TextAlign = 1;
  }

 private:
  /// A tick at height `y` and its number, whose upper edge is at `textTop`.
  void Label(double y, double textTop, double value) {
    Steps.Run("label of the palette bar", [&] {
      const int row = RoundToInteger(y);
      const std::array<std::int32_t, 4> tick = {PictureWidth + kTickLeft, row,
                                                PictureWidth + kLabelLeft, row};
      Target.DrawPolyline(tick);
      const int left = PictureWidth + kLabelLeft;
      Select(Target, left, textTop, Target.BufWidth() - left - Behind, TextHeight);
      Target.Text = LabelText(value);
      Target.DrawSelText();
    });
  }
  /// The labels between two others, from the lower one upwards.
  void MinorLabels(double fromY, double toY, double fromValue, double toValue) {
    constexpr double kSteps = kMinorTicks + 1;
    for (int k = 1; k <= kMinorTicks; ++k) {
      const double y = fromY - k * (fromY - toY) / kSteps;
      Label(y, y - TextHeight / 2.0, fromValue + k * (toValue - fromValue) / kSteps);
    }
  }
};

}  // namespace

void DownloadConversion::dwnGetMainImage(Picbuf& picture, Picbuf& barPicture, double lo,
                                         double hi) {
  Steps.Run("picture with bar and photograph", [&] {
    const int width = picture.BufWidth();
    const int height = picture.BufHeight();
    const bool hasBar = Options.PaletteBar == 1;
    // Without a bar there is no text to be measured, and perhaps nothing to measure it with.
    const QSize highSize = hasBar ? MeasureText(LabelText(hi)) : QSize();
    const int barWidth =
        hasBar ? kLabelLeft + std::max(highSize.width(), MeasureText(LabelText(lo)).width()) : 0;
    const int gap = HasVisibleImage ? kVisibleGap : 0;
    const int visibleWidth =
        HasVisibleImage ? RoundToInteger(Divide(pbVis_.BufWidth(), pbVis_.BufHeight()) * height)
                        : 0;
    pbResult_.CreateBuffer(kWhite, height, width + barWidth + visibleWidth + gap, 24);
    Select(pbResult_, 0, 0, width, height);
    pbResult_.CopyFrom(false, picture, true);
    if (hasBar) {
      Bar{pbResult_, Steps, width, height, visibleWidth + gap, highSize.height()}.Draw(
          barPicture, lo, hi, Unit());
    }
    if (visibleWidth > 0) {
      Select(pbResult_, width + barWidth + gap, 0, visibleWidth, height);
      pbResult_.CopyFrom(false, pbVis_, true);
    }
    picture.CopyFrom(false, pbResult_, false);
  });
}

QString DownloadConversion::LeftBlock() const {
  QStringList lines;
  const auto add = [&](int word, const char* text, const QString& value) {
    lines += words_.LangString(word, text) + QStringLiteral(" : ") + value;
  };
  if (Wants(DownloadOptions::kExtremes)) {
    add(192, "Min Temp", DegreesText(DwnImageMin));
  }
  if (Wants(DownloadOptions::kDate)) {
    add(137, "Date", DwnDateText);
  } else if (Wants(DownloadOptions::kTime)) {
    add(263, "Time", DwnTimeText);
  }
  if (Wants(DownloadOptions::kEmissivity)) {
    add(160, "Emissivity", DwnEmissivityText);
  }
  if (Wants(DownloadOptions::kMemo) && !DwnMemoText.isEmpty()) {
    lines += DwnMemoText;
  }
  return lines.join(QStringLiteral("\r\n"));
}

QString DownloadConversion::RightBlock(int& width) const {
  QStringList lines;
  const auto add = [&](const QString& line) {
    lines += line;
    width = std::max(width, MeasureText(line).width());
  };
  if (Wants(DownloadOptions::kExtremes)) {
    add(words_.LangString(185, "Max Temp") + QStringLiteral(" : ") + DegreesText(DwnImageMax));
  }
  // The date stands on the left; alone, the time does.
  if (Wants(DownloadOptions::kDate) && Wants(DownloadOptions::kTime)) {
    add(words_.LangString(263, "Time") + QStringLiteral(" : ") + DwnTimeText);
  }
  return lines.join(QStringLiteral("\r\n"));
}

void DownloadConversion::dwnBuildOvl(int lineCount, int rightEdge) {
  Steps.Run("text below the picture", [&] {
    const bool lacksMemo = Wants(DownloadOptions::kMemo) && DwnMemoText.isEmpty();
    const int lines = lacksMemo ? lineCount - 1 : lineCount;
    const int bandHeight = MeasureText(QStringLiteral("X")).height() * lines + kBandMargin;
    const int top = PicBuf2.BufHeight();
    const int width = PicBuf2.BufWidth();
    PicBuf2.ConvertDepth(24);
    pbResult_.CreateBuffer(kWhite, top + bandHeight, width, 24);
    Select(pbResult_, 0, 0, width, top);
    pbResult_.CopyFrom(false, PicBuf2, true);
    pbResult_.ForeColor = 0;
    pbResult_.TextAlign = 1;
    const auto draw = [&](const QString& text, int left) {
      Select(pbResult_, left, top + 1, width - left + 1, pbResult_.BufHeight() - top + 1);
      pbResult_.Text = text;
      pbResult_.DrawSelText();
    };
    draw(LeftBlock(), 0);
    int blockWidth = 0;
    const QString right = RightBlock(blockWidth);
    if (!right.isEmpty()) {
      draw(right, rightEdge - blockWidth);
    }
    PicBuf2.CopyFrom(false, pbResult_, false);
  });
}

}  // namespace tessa
