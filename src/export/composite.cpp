#include "export/composite.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/units.h"
#include "formats/number_text.h"

namespace tessa {
namespace {

// Pixels of the drawing.
constexpr int kFullHeight = 240;
constexpr int kFullWidth = 320;
constexpr int kBarGap = 5;  // From the image to the bar.
constexpr int kBarWidth = 15;
constexpr int kTickStart = 20;  // From the image.
constexpr int kLabelStart = 25;
constexpr int kVisibleGap = 5;
constexpr int kVisibleWidth = 320;
constexpr int kVisibleHeight = 240;
constexpr int kUnitWidth = 14;
constexpr double kMiddleEntry = 128.0;

/// What one drawing goes by.
struct Plan {
  bool WithVisible = false;
  bool HasTemperature = false;
  int ImageWidth = 0;  // Of the image in the drawing.
  int ImageHeight = 0;
  int TextWidth = 0;
  int TextHeight = 0;
  double BarHeight = 0.0;
  double BarTop = 0.0;  // Stays unrounded.
};

void Select(Picbuf& buffer, double left, double top, double width, double height) {
  buffer.SelLeft = RoundToInteger(left);
  buffer.SelTop = RoundToInteger(top);
  buffer.SelWidth = RoundToInteger(width);
  buffer.SelHeight = RoundToInteger(height);
}

void SelectAll(Picbuf& buffer) {
  Select(buffer, 0, 0, buffer.BufWidth(), buffer.BufHeight());
}

/// A number as the bar shows it, with the blank that ends it.
QString BarText(double value, bool hasTemperature) {
  return QString::fromStdString(FormatFixed(value, hasTemperature ? 1 : 0)) + QLatin1Char(' ');
}

/// Size of the image in the drawing, and the height of the whole.
int PlanSize(const OpenImage& image, Plan& plan) {
  const int width = image.ImageWidth;
  const int height = image.ImageHeight;
  if (height < kFullHeight && width < kFullWidth) {
    plan.ImageWidth = width;
    plan.ImageHeight = height;
    return height;
  }
  plan.ImageHeight = kFullHeight;
  plan.ImageWidth = RoundToInteger(Divide(kFullHeight, height) * width);
  const bool sameProportions =
      static_cast<double>(width) / height == plan.ImageWidth / static_cast<double>(kFullHeight);
  return sameProportions ? kFullHeight : kFullHeight - 1;
}

void PlanTexts(const OpenImage& image, Plan& plan) {
  plan.HasTemperature = image.HasTemperature;
  const QSize high = MeasureText(BarText(image.ShownHigh, image.HasTemperature));
  const QSize low = MeasureText(BarText(image.ShownLow, image.HasTemperature));
  plan.TextWidth = std::max(high.width(), low.width());
  plan.TextHeight = high.height();
  plan.BarHeight = RoundToInteger(plan.ImageHeight - plan.TextHeight - plan.TextHeight / 2.0);
  plan.BarTop = plan.TextHeight / 2.0 - 2.0;
}

// Each operation of a drawing is a step of its own: beside an image of a few rows the bar has no
// room, and what has is drawn all the same.

void DrawImageAndBar(const Plan& plan, ViewBuffers& buffers, StepLog& steps) {
  Picbuf& target = buffers.Picbuf3;
  steps.Run("image in composite", [&] {
    // Only the part that is drawn is turned into colours: the image can be far larger than that.
    buffers.Picbuf8.CreateBuffer(0, plan.ImageHeight, plan.ImageWidth, 24);
    Select(buffers.Picbuf8, 0, 0, plan.ImageWidth, plan.ImageHeight);
    buffers.Picbuf8.CopyFrom(false, buffers.Picbuf1, true);
    Select(target, 0, 0, plan.ImageWidth, plan.ImageHeight);
    target.CopyFrom(true, buffers.Picbuf8, true);
  });
  steps.Run("palette bar in composite", [&] {
    Picbuf& strip = buffers.Picbuf9;
    strip.CopyFrom(false, buffers.Picbuf7, false);
    strip.ConvertDepth(24);
    // All columns of the strip are alike; a short bar would ask for more than there are.
    const double width = Divide(strip.BufHeight(), plan.BarHeight) * kBarWidth;
    Select(strip, 0, 0, std::min<double>(width, strip.BufWidth()), strip.BufHeight());
    Select(target, plan.ImageWidth + kBarGap, plan.BarTop, kBarWidth, plan.BarHeight - 2);
    target.CopyFrom(true, strip, true);
  });
  steps.Run("frame of the palette bar", [&] {
    target.ForeColor = 0;
    Select(target, plan.ImageWidth + kBarGap - 1, plan.BarTop - 1, kBarWidth + 1,
           plan.BarHeight - 2);
    target.DrawSelFrame();
  });
}

/// One tick at height `y` with its text; `top` is the text's upper edge.
void DrawTick(const Plan& plan, double y, double top, const QString& text, Picbuf& target,
              StepLog& steps) {
  steps.Run("tick", [&] {
    const std::array<std::int32_t, 4> line = {plan.ImageWidth + kTickStart, RoundToInteger(y),
                                              plan.ImageWidth + kLabelStart, RoundToInteger(y)};
    target.DrawPolyline(line);
  });
  steps.Run("label of a tick", [&] {
    const int left = plan.ImageWidth + kLabelStart;
    const int behind = plan.WithVisible ? kVisibleWidth + kVisibleGap : 0;
    Select(target, left, top, target.BufWidth() - left - behind, MeasureText(text).height());
    target.Text = text;
    target.DrawSelText();
  });
}

/// Four ticks upwards from `from` towards `to`, beside the labels from `firstLabel` on. Without
/// temperatures the texts count up from `entry` instead.
void DrawMinorTicks(const Plan& plan, const ViewState& view, double from, double to,
                    std::size_t firstLabel, double entry, Picbuf& target, StepLog& steps) {
  const double step = (from - to) / 5.0;
  double y = from;
  for (std::size_t label = firstLabel; label < firstLabel + 4; ++label) {
    y -= step;
    entry += kMiddleEntry / 5.0;
    const double value =
        plan.HasTemperature ? ParseNumber(view.ScaleLabel[label]) : std::nearbyint(entry);
    const QString text = BarText(value, plan.HasTemperature);
    const double tick = std::nearbyint(y);
    DrawTick(plan, tick, tick - MeasureText(text).height() / 2.0, text, target, steps);
  }
}

void DrawScale(const Plan& plan, const OpenImage& image, const ViewState& view, Picbuf& target,
               StepLog& steps) {
  target.TextAlign = 1;
  target.TextOptionA = 0;
  target.TextOptionB = 0;
  const std::array<double, 3> heights = {plan.BarTop + plan.BarHeight - 3,
                                         plan.BarHeight / 2.0 + plan.BarTop - 1, plan.BarTop};
  for (std::size_t label = 0; label < heights.size(); ++label) {
    const QString& caption = view.ScaleLabel[label];
    const QString text =
        BarText(caption.isEmpty() ? image.ShownHigh : ParseNumber(caption), plan.HasTemperature);
    const double top = label == 2 ? 0.0 : heights[label] - MeasureText(text).height() / 2.0;
    DrawTick(plan, heights[label], top, text, target, steps);
  }
  DrawMinorTicks(plan, view, heights[0], heights[1], 7, 0.0, target, steps);
  DrawMinorTicks(plan, view, heights[1], heights[2], 3, kMiddleEntry, target, steps);

  steps.Run("unit of the palette bar", [&] {
    target.TextAlign = 2;
    target.Text = !plan.HasTemperature        ? QStringLiteral("Pal")
                  : image.DisplayUnits == 'F' ? QStringLiteral("\u00B0F")
                                              : QStringLiteral("\u00B0C");
    const int textHeight = MeasureText(target.Text).height();
    Select(target, plan.ImageWidth + kBarGap, plan.ImageHeight - textHeight + 1, kUnitWidth,
           textHeight);
    target.DrawSelText();
  });
}

void Build(bool withVisible, Session& session) {
  const OpenImage& image = session.Image;
  ViewBuffers& buffers = session.Buffers;
  StepLog& steps = session.Steps;
  for (Picbuf* buffer : {&buffers.Picbuf3, &buffers.PicBuf6, &buffers.Picbuf8, &buffers.Picbuf9}) {
    buffer->FreeBuffer();
  }
  Plan plan;
  plan.WithVisible = withVisible;
  int height = 0;
  steps.Run("size of the composite", [&] { height = PlanSize(image, plan); });
  steps.Run("texts of the palette bar", [&] { PlanTexts(image, plan); });
  const int barEnd = plan.ImageWidth + kLabelStart + plan.TextWidth;
  steps.Run("create composite", [&] {
    buffers.Picbuf3.CreateBuffer(kWhite, height,
                                 barEnd + (withVisible ? kVisibleGap + kVisibleWidth : 0), 24);
  });
  steps.Run("create palette bar", [&] {
    buffers.PicBuf6.CreateBuffer(kWhite, plan.ImageHeight, kTickStart + plan.TextWidth, 24);
  });
  DrawImageAndBar(plan, buffers, steps);
  DrawScale(plan, image, session.View, buffers.Picbuf3, steps);
  if (withVisible) {
    steps.Run("visible picture in composite", [&] {
      Select(buffers.Picbuf3, barEnd + kVisibleGap, 0, kVisibleWidth, kVisibleHeight);
      buffers.Picbuf3.CopyFrom(false, session.Visible.Picbuf3, true);
    });
  }
  steps.Run("palette bar by itself", [&] {
    Select(buffers.Picbuf3, plan.ImageWidth + kBarGap - 1, 0, kTickStart + plan.TextWidth,
           plan.ImageHeight);
    SelectAll(buffers.PicBuf6);
    buffers.PicBuf6.CopyFrom(true, buffers.Picbuf3, true);
  });
}

}  // namespace

void BuildCompositeView(Session& session) {
  Build(true, session);
}

void BuildPaletteView(Session& session) {
  Build(false, session);
}

}  // namespace tessa
