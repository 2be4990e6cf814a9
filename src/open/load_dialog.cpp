#include "open/load_dialog.h"

#include <array>
#include <utility>

#include "open/load_image.h"

namespace tessa {

QStringList LoadFilters(const Strings& strings) {
  struct Kind {
    const char* Words;
    const char* Ending;
  };
  static constexpr std::array<Kind, 6> kKinds = {{{"Bitmap ", "BMP"},
                                                  {"TIFF ", "TIF"},
                                                  {"JPEG ", "JPG"},
                                                  {"SIT ", "SIT"},
                                                  {"TXI ", "TXI"},
                                                  {"TMP ", "TMP"}}};
  // Names of files keep their case here, so each pattern is offered in both.
  QStringList all;
  const auto pattern = [&all](const QString& words, const char* ending) {
    const QString upper = QString::fromLatin1(ending);
    const QString both = QStringLiteral("*.") + upper + QStringLiteral(" *.") + upper.toLower();
    all.append(both);
    return words + QStringLiteral(" (") + both + QLatin1Char(')');
  };
  const QString images = strings.LangString(177, "Images");
  QStringList filters;
  for (const Kind& kind : kKinds) {
    filters.append(pattern(QString::fromLatin1(kind.Words) + images, kind.Ending));
  }
  filters.append(pattern(strings.LangString(221, "RTI Snapshots"), "RTI"));
  all.append(QStringLiteral("*.TIFF *.tiff *.JPEG *.jpeg *.BIN *.bin"));
  filters.insert(kAllImagesFilter, strings.LangString(291, "All Images") + QStringLiteral(" (") +
                                       all.join(QLatin1Char(' ')) + QLatin1Char(')'));
  filters.append(QStringLiteral("All Files (*)"));
  return filters;
}

void LoadDialog(int filterIndex, Session& session, Dialogs& dialogs, Progress& progress) {
  OpenImage& image = session.Image;
  image.UiLocked = true;
  image.ImageBusy = true;
  session.View.SuppressEvents = true;
  QString path = std::exchange(session.PendingCommandFile, QString());
  if (path.isEmpty()) {
    path =
        dialogs.AskOpenFile({session.Settings.LastFolder, LoadFilters(session.Words), filterIndex})
            .value_or(QString());
  }
  if (path.isEmpty()) {
    image.ImageBusy = false;
    session.View.SuppressEvents = false;
  } else {
    OpenPath(path, session, progress);
  }
  image.UiLocked = false;
}

}  // namespace tessa
