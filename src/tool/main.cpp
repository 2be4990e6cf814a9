#include <malloc.h>

#include "core/process_start.h"
#include "tool/command_line.h"

int main(int argc, char** argv) {
  tessa::PrepareProcess();
  // Image after image takes and returns the same few blocks; handing them back to the system and
  // asking for them again would cost as much as the decoding.
  constexpr int kKeptBytes = 256 << 20;
  mallopt(M_MMAP_THRESHOLD, kKeptBytes);
  mallopt(M_TRIM_THRESHOLD, kKeptBytes);
  mallopt(M_TOP_PAD, 4 << 20);
  return tessa::RunToolCommandLine(argc, argv);
}
