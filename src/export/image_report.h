#pragma once

#include <QJsonObject>
#include <QString>

#include "open/session.h"

namespace tessa {

/// All that is known about the open image: every field of OpenImage that a load sets under its own
/// name, and Kind, Comment, Memo, Status (the six panels), RangeControl and Problems. Singles
/// appear with the fewest digits that give the same 32-bit value back.
QJsonObject ReportAsJson(const Session& session);

/// A single as the JSON number with the fewest digits that give it back; null when not finite.
QJsonValue ShortestNumber(float value);

/// The same for people: a few aligned lines, temperatures in the unit of display. `sound` is what
/// the caller found out about the image's note; when empty, the record has to do.
QString ReportAsText(const Session& session, const QString& sound = {});

}  // namespace tessa
