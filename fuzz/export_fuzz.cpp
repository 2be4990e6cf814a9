#include <array>
#include <string>

#include "export/image_export.h"
#include "session_input.h"

using tessa::fuzz::Require;

namespace {

/// Exports the open image in one format; true when it went. A refusal has a reason.
bool Export(const QString& ending, const tessa::ExportOptions& options, tessa::Session& session) {
  try {
    Require(!tessa::EncodeForExport(session, ending, options).empty(), "a file is not empty");
    return true;
  } catch (const tessa::StepFailure& failure) {
    Require(*failure.what() != '\0', "a refusal has a reason");
    return false;
  }
}

}  // namespace

/// The first byte picks the ending, the second the options, the others are the file. It is exported
/// in every format.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static constexpr std::array<const char*, 8> kEndings = {"rti", "bmp", "txi", "tmp",
                                                          "sit", "bin", "tif", "jpg"};
  if (size < 2) {
    return 0;
  }
  tessa::fuzz::MakeApplication();
  const std::string name = std::string("input.") + kEndings[data[0] % kEndings.size()];
  const QString path = tessa::fuzz::WriteInput(name.c_str(), {data + 2, size - 2});
  tessa::ExportOptions options;
  options.View = static_cast<tessa::ExportView>(data[1] & 3);
  options.Reverse = (data[1] & 4) != 0;
  options.Unit = (data[1] & 8) != 0 ? 'F' : 'C';
  options.Range.From = static_cast<tessa::ExportRange::Choice>((data[1] >> 4) % 3);
  options.Range.High = 100.0;
  tessa::Session session(tessa::fuzz::InputFolder());
  tessa::PrepareForExport(options, {}, session);
  try {
    tessa::LoadForExport(path, options, session);
    tessa::fuzz::RequireGoodImage(session);
    for (const QString& ending : tessa::ExportEndings()) {
      Export(ending, options, session);
    }
    if (options.View == tessa::ExportView::kImage) {
      Require(Export(QStringLiteral("png"), options, session), "every image can be a picture");
    }
  } catch (const tessa::StepFailure& failure) {
    Require(*failure.what() != '\0', "a refusal has a reason");
  }
  QFile::remove(path);
  return 0;
}
