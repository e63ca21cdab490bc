#include "app/win32/window_creator.h"

namespace Win {

HWND WindowCreator::Create(const char* title) const {
  HWND window = CreateWindowExA(extendedStyle_, className_, title, style_, x_, y_, width_, height_, parent_,
                                menu_, instance_, creationData_);
  if (window == nullptr) throw "Window Creation Failed";
  return window;
}

}  // namespace Win
