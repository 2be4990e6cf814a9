#pragma once

#include <QString>

namespace tessa {

/// The file called `name` beside `imagePath`: by its exact case, else the one whose name differs in
/// case only, since cameras know no small letters. The path as named when there is none at all;
/// empty when several differ in case only, for then nobody can tell which is meant. `name` must be
/// a plain name.
QString FindSideFile(const QString& imagePath, const QString& name);

}  // namespace tessa
