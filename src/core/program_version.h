#pragma once

#include <QString>

namespace tessa {

/// "1.0.0": major, minor and revision number of the program.
QString ProgramVersion();

}  // namespace tessa
