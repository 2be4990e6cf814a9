#include "core/kinds.h"

#include <algorithm>
#include <array>

namespace tessa {
namespace {

// The rows of image kinds stand first, at the position that their value names.
constexpr std::array<KindRules, 11> kKinds = {{
    {.Name = FileKind::kBmp,
     .Ending = "BMP",
     .ImageKind = KindBmp,
     .Word = "BMP ",
     .LoadedBy = Loader::kBitmap,
     .ReadsGrid = true,
     .RendersAllColumns = true,
     .OpensByToggle = When::kMeasured,
     .PlainPairAtLoad = When::kMeasured,
     .PlainPairAtClick = When::kMeasured,
     .HasMarkers = When::kMeasured,
     .TakesEnteredRange = When::kMeasured},
    {.Name = FileKind::kTif,
     .Ending = "TIF",
     .ImageKind = KindTiff,
     .Word = "TIFF ",
     .LoadedBy = Loader::kTiff,
     .ReadsGrid = true,
     .RendersAllColumns = true,
     .OpensByToggle = When::kMeasured,
     .PlainPairAtLoad = When::kMeasured,
     .PlainPairAtClick = When::kMeasured,
     .HasMarkers = When::kMeasured,
     .TakesEnteredRange = When::kMeasured},
    {.Name = FileKind::kJpg,
     .Ending = "JPG",
     .ImageKind = KindJpeg,
     .Word = "JPEG ",
     .LoadedBy = Loader::kJpeg},
    {.Name = FileKind::kSit,
     .Ending = "SIT",
     .ImageKind = KindSit,
     .Word = "SIT ",
     .LoadedBy = Loader::kStill,
     .HasRowPass = false,
     .ReadsGrid = true,
     .OpensByToggle = When::kAlways,
     .MovesRange = true,
     .UsesSitPairs = true,
     .ResetsByToggle = true,
     .HasMarkers = When::kAlways,
     .TakesEnteredRange = When::kAlways},
    {.Name = FileKind::kTxi,
     .Ending = "TXI",
     .ImageKind = KindTxi,
     .Word = "TXI ",
     .LoadedBy = Loader::kBitmap,
     .ReadsGrid = true,
     .RendersAllColumns = true,
     .MovesRangeByName = true,
     .MarksStoredScale = true,
     .HasMarkers = When::kAlways,
     .TakesEnteredRange = When::kAlways},
    {.Name = FileKind::kTmp,
     .Ending = "TMP",
     .ImageKind = KindTmp,
     .Word = "TMP ",
     .LoadedBy = Loader::kStill,
     .HasRowPass = false,
     .ReadsGrid = true,
     .OpensByToggle = When::kAlways,
     .PlainPairAtLoad = When::kAlways,
     .PlainPairAtClick = When::kAlways,
     .MovesRange = true,
     .ResetsByToggle = true,
     .HasMarkers = When::kAlways,
     .TakesEnteredRange = When::kAlways},
    // The flip at the end of a load leaves sequences out; only the button knows them.
    {.Name = FileKind::kRti,
     .Ending = "RTI",
     .ImageKind = KindRti,
     .Word = "RTI ",
     .LoadedBy = Loader::kSequence,
     .HasRowPass = false,
     .ReadsGrid = true,
     .RendersAllColumns = true,
     .PlainPairAtClick = When::kAlways,
     .MovesRange = true,
     .HasMarkers = When::kAlways,
     .TakesEnteredRange = When::kAlways},
    {.Name = FileKind::kRtv, .Ending = "RTV", .ImageKind = KindRtv, .Word = "RTV "},
    // A SIT image to every rule once it is loaded.
    {.Name = FileKind::kBin, .Ending = "BIN", .LoadedBy = Loader::kStill, .HasRowPass = false},
    {.Name = FileKind::kSeq, .Ending = "SEQ", .ReadsGrid = true, .RendersAllColumns = true},
    {},
}};

}  // namespace

const KindRules& KindOfName(const QString& upperCasedPath) {
  const QString ending = upperCasedPath.endsWith(QLatin1String(".JPEG")) ? QStringLiteral("JPG")
                         : upperCasedPath.endsWith(QLatin1String(".TIFF"))
                             ? QStringLiteral("TIF")
                             : upperCasedPath.right(3);
  const auto found = std::find_if(kKinds.begin(), kKinds.end() - 1, [&](const KindRules& kind) {
    return ending == QLatin1String(kind.Ending);
  });
  return *found;
}

const KindRules& KindOfImage(int imageKind) {
  return imageKind >= KindBmp && imageKind <= KindRtv ? kKinds[static_cast<std::size_t>(imageKind)]
                                                      : kKinds.back();
}

QString KindWord(int imageKind) {
  return QString::fromLatin1(KindOfImage(imageKind).Word);
}

}  // namespace tessa
