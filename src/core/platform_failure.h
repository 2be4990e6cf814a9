#pragma once

namespace tessa {

/// From now on, a platform layer of Qt that cannot start (no display, a plug-in that is missing)
/// ends the program with a sentence on standard error and status 1 instead of an abort. `program`
/// is its name and lives as long as it. What Qt says about it on the way is left out; other
/// messages go on as before. EndPlatformStart() brings back the usual handling.
void BeginPlatformStart(const char* program);
void EndPlatformStart();

/// Prints the sentence and ends the program with status 1, without cleaning up.
[[noreturn]] void ExitWithoutPlatform(const char* program);

}  // namespace tessa
