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

/// One frame and the name it is written under.
struct FrameOutput {
  int Frame = 1;  // 1-based.
  QString Name;   // Of a file in the image's folder.
};

/// The outputs for all frames of the open sequence; none for an unusable prefix.
std::vector<FrameOutput> ListFrameOutputs(const QString& prefix, FrameFormat format,
                                          const OpenImage& image);

/// True when the image's folder holds something of this name.
bool OutputExists(const QString& name, const OpenImage& image);

struct FrameConversion {
  FrameFormat Format = FrameFormat::kBmp;
  std::vector<FrameOutput> Outputs;  // What is written, and nothing else.
};

struct FailedOutput {
  QString Name;
  QString Reason;
};

struct ConversionResult {
  int Written = 0;
  std::vector<FailedOutput> Failed;
};

/// Converts frames of the open sequence into files beside it, in the range that stands in the
/// view's boxes, and then shows the frame again that was on show. Existing files of the names are
/// replaced; a name that would lead out of the folder is a failed output. A failed output is
/// counted and the next one is written; how many came through and what failed is also told in the
/// view's notice. Each step of the view saves under the buffer's present name, so an output is
/// written once more with the frame that is shown after it: that is how this conversion works.
/// `status` receives the line for the user.
ConversionResult ConvertFrames(const FrameConversion& conversion, Session& session,
                               Progress& progress,
                               const std::function<void(const QString&)>& status);
/// A step to another frame: shows CurrentFrame as ShowFrameFile does and saves the picture once
/// more under the buffer's name, if and only if that is an output of the running or the last
/// conversion. False when the frame went blank.
bool ShowAndSaveFrame(bool keepScale, Session& session, Progress& progress);

}  // namespace tessa
