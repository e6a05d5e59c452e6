// The memory that COM hands out in this process: strings, and what one side takes and the other
// gives back. Whoever took it, what a journey leaves of it is lost.
#pragma once

class TaskMemory {
 public:
  // From then on, until the process ends.
  static void count();
  static long blocks() noexcept;
};
