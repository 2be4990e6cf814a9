#include "tool/visible_command.h"

#include "core/file_access.h"
#include "core/write_file.h"
#include "formats/sit.h"
#include "open/visible_image.h"
#include "tool/streams.h"

namespace tessa {

int RunVisible(const VisibleCall& call) {
  const QString path = FromArgument(call.File);
  try {
    Problems faults;
    const auto file = RandomFile::Open(path, faults);
    if (!file) {
      throw StepFailure(faults.front().Text);
    }
    const SitImage image = DecodeSit(file->ReadAt(0, kSitDecodeSize), file->Size());
    if (const Problem* const reason = FindNoImage(image.Faults)) {
      throw StepFailure(reason->Text);
    }
    const Bytes jpeg = CutOutVisible(*file, VisiblePosition(image.Header, image.VisibleLength));
    if (jpeg.empty()) {
      throw StepFailure("the image has no visible-light picture inside");
    }
    const QString target = FromArgument(call.Out);
    if (IsSameFile(path, target)) {
      throw StepFailure("the picture would overwrite the image itself");
    }
    WriteWholeFile(target, jpeg, call.Force ? Overwrite::kReplace : Overwrite::kRefuse);
    return kToolDone;
  } catch (const std::exception& failure) {
    PrintError(path, failure.what());
    return kToolFailed;
  }
}

}  // namespace tessa
