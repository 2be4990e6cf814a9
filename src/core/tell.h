#pragma once

#include "core/language_strings.h"
#include "core/view_state.h"

namespace tessa {

/// The notice takes the place of the one before it.
void Tell(NoticeKind kind, const QString& text, ViewState& view);

/// The user closed the notice, or what it told of is gone.
void DismissNotice(ViewState& view);

/// The same for a failure alone: a new request takes the place of what was told of the last one.
void DismissFailure(ViewState& view);

/// "and 2 more"; empty where there are no more.
QString FurtherText(const Notice& notice, const Strings& words);

}  // namespace tessa
