#pragma once

namespace tessa {

/// What a program that writes users' files does before all else. Standard streams that came closed
/// are taken, so that no file gets their numbers and with them what is printed; output to them
/// still fails. A write beyond the limit on file sizes fails with a reason instead of ending the
/// program by a signal, so that a file that was being appended to is put back.
void PrepareProcess();

}  // namespace tessa
