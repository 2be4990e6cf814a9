#pragma once

namespace tessa {

/// The command-line tool: parses the arguments, runs the command, reports on the standard streams.
/// Returns the exit status: 0 done, 1 something could not be read or written, 2 a wrong call, 128
/// and its number after a signal.
int RunToolCommandLine(int argc, char** argv);

}  // namespace tessa
