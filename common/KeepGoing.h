// What a long run asks of whoever shows it.
#pragma once

// Lets pending events run, then tells whether to go on.
class KeepGoing {
 public:
  virtual bool keepGoing() = 0;

 protected:
  ~KeepGoing() = default;
};
