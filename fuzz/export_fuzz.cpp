#include <array>
#include <string>

#include "export/image_export.h"
#include "session_input.h"

/// Exports the open image in one format; true when it went. A refusal has a reason.
static bool Export(const QString& ending, const ExportOptions& options, Session& session) {
  try {
    Require(!EncodeForExport(session, ending, options).empty(), "a file is not empty");
    return true;
  } catch (const StepFailure& failure) {
    Require(*failure.what() != '\0', "a refusal has a reason");
    return false;
  }
}

/// The first byte picks the ending, the second the options, the others are the file. It is exported
/// in every format.
FUZZ_ENTRY {
  static constexpr std::array<const char*, 8> kEndings = {"rti", "bmp", "txi", "tmp",
                                                          "sit", "bin", "tif", "jpg"};
  if (size < 2) {
    return;
  }
  MakeApplication();
  const std::string name = std::string("input.") + kEndings[data[0] % kEndings.size()];
  const QString path = WriteInput(name.c_str(), {data + 2, size - 2});
  ExportOptions options;
  options.View = static_cast<ExportView>(data[1] & 3);
  options.Reverse = (data[1] & 4) != 0;
  options.Unit = (data[1] & 8) != 0 ? 'F' : 'C';
  options.Range.From = static_cast<ExportRange::Choice>((data[1] >> 4) % 3);
  options.Range.High = 100.0;
  Session session(InputFolder());
  PrepareForExport(options, {}, session);
  try {
    LoadForExport(path, options, session);
    RequireGoodImage(session);
    for (const QString& ending : ExportEndings()) {
      Export(ending, options, session);
    }
    if (options.View == ExportView::kImage) {
      Require(Export(QStringLiteral("png"), options, session), "every image can be a picture");
    }
  } catch (const StepFailure& failure) {
    Require(*failure.what() != '\0', "a refusal has a reason");
  }
  QFile::remove(path);
}
