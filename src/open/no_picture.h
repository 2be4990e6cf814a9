#pragma once

#include <functional>

#include "open/session.h"

namespace tessa {

/// True when a picture is open that can be shown, saved and copied.
bool HasPicture(const Session& session);

/// Runs the load of the open image's file. First the former picture, its texts and what was told of
/// it go, so that a load which breaks off has nothing old to show. Whatever `load` throws becomes a
/// Problem of the file.
void LoadAfresh(Session& session, const std::function<void()>& load);

/// The last step of opening: a load without a picture leaves the empty state, with the file's name,
/// the reason and what to do, and nothing of an image in records and buffers; one with faults
/// leaves a quiet notice.
void TellAboutFile(Session& session);

/// Why the file at `path` shows no picture: a sentence in the language of the moment and, where it
/// says more, what the reader found (English).
QString WhyNoPicture(const Problem& problem, const QString& path, const Strings& words);

/// After a change of language: what is still told of the file takes its new words.
void RetellAboutFile(Session& session);

}  // namespace tessa
