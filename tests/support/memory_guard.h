// Watches that what happens does not take much memory.
#pragma once

#include <malloc.h>
#include <sys/resource.h>

namespace tockwise {

class MemoryGuard {
 public:
  MemoryGuard() {
    malloc_trim(0);
    m_before = peakMegabytes();
  }
  long grownMegabytes() const { return peakMegabytes() - m_before; }
  bool isBounded() const { return grownMegabytes() < kMostMegabytes; }

 private:
  // The sanitizers keep what was freed for a while.
#ifdef __SANITIZE_ADDRESS__
  static constexpr long kMostMegabytes = 2048;
#else
  static constexpr long kMostMegabytes = 256;
#endif

  static long peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
  }
  long m_before = 0;
};

} // namespace tockwise
