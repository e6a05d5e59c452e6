// Keys that are held down while it lives, as this thread's code sees them.
#pragma once

#include <windows.h>

#include <initializer_list>

class HeldKeys {
 public:
  HeldKeys(std::initializer_list<int> keys) {
    BYTE state[256] = {};
    for (const int key : keys) state[key] = 0x80;
    SetKeyboardState(state);
  }
  ~HeldKeys() {
    BYTE state[256] = {};
    SetKeyboardState(state);
  }
  HeldKeys(const HeldKeys&) = delete;
  HeldKeys& operator=(const HeldKeys&) = delete;
};
