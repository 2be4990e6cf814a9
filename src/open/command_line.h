#pragma once

#include <QString>
#include <span>

namespace tessa {

/// The image that the viewer's arguments name: all of them joined with blanks, less a pair of
/// double quotes around the whole. Empty for none. A relative path is taken from the present
/// folder. Takes the bytes of the arguments, since not every name is UTF-8 (core/path_bytes.h).
QString PendingFileFromArguments(std::span<const char* const> arguments);

}  // namespace tessa
