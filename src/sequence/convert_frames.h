#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "core/progress.h"
#include "open/session.h"

namespace tessa {

enum class FrameFormat { kBmp, kTxi };

/// Name of the output for 1-based `frame`: "A007.BMP".
QString FrameOutputName(const QString& prefix, int frame, FrameFormat format);

/// True for a prefix that names files in the image's own folder and nowhere else.
bool IsUsablePrefix(const QString& prefix);

/// A step to another frame: shows CurrentFrame as ShowFrameFile does and saves the picture once
/// more under the buffer's name, if and only if that is an output of the running or the last
/// conversion.
void ShowAndSaveFrame(bool keepScale, Session& session, Progress& progress);

struct FrameConversion {
  QString Prefix;
  FrameFormat Format = FrameFormat::kBmp;
  std::vector<int> Frames;  // 1-based.
};

/// Converts frames of the open sequence into files beside it, in the range that RangeLowText
/// and RangeHighText of the view tell, applied or not, and
/// then shows the frame again that was on show. Existing files of the names are replaced. Each step
/// of the view saves under the buffer's present name, so an output is written once more with the
/// frame that is shown after it: that is how this conversion works. `status` receives the line for
/// the user.
void ConvertFrames(const FrameConversion& conversion, Session& session, Progress& progress,
                   const std::function<void(const QString&)>& status);

}  // namespace tessa
