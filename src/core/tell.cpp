#include "core/tell.h"

namespace tessa {

void Tell(NoticeKind kind, const QString& text, ViewState& view) {
  const int generation = view.Notice.Generation + 1;
  view.Notice = {kind, text, 0, generation, false};
}

void DismissNotice(ViewState& view) {
  Tell(NoticeKind::kQuiet, QString(), view);
}

void DismissFailure(ViewState& view) {
  if (view.Notice.Kind == NoticeKind::kFailed) {
    DismissNotice(view);
  }
}

QString FurtherText(const Notice& notice, const Strings& words) {
  return notice.Further > 0 ? words.LangString(432, "and %1 more").arg(notice.Further) : QString();
}

}  // namespace tessa
