#pragma once

#include <QtGlobal>

namespace tessa {

/// Loads one of the program's own libraries, which stands beside the program as it is built or
/// where it is installed, and gives its function. What takes long to load and is seldom needed is
/// kept in such libraries. The library stays for as long as the program runs. Throws StepFailure.
QFunctionPointer LoadProgramFunction(const char* library, const char* function);

}  // namespace tessa
