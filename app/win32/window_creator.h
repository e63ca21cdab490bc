// Description of a window to create; its fields go to CreateWindowExA unchanged.
#pragma once
#include <windows.h>

namespace Win {

class WindowCreator {
 public:
  WindowCreator(HINSTANCE instance, const char* className)
      : instance_(instance), className_(className) {}

  void SetPosition(int x, int y, int width, int height) {
    x_ = x;
    y_ = y;
    width_ = width;
    height_ = height;
  }
  // Handed to the window's WM_CREATE (CREATESTRUCT's lpCreateParams).
  void SetCreationData(void* data) { creationData_ = data; }
  // Creates the window; throws the text "Window Creation Failed" when it cannot.
  HWND Create(const char* title) const;

 private:
  HINSTANCE instance_;
  const char* className_;
  DWORD style_ = WS_OVERLAPPEDWINDOW;
  DWORD extendedStyle_ = 0;
  int x_ = 10;
  int y_ = 0;
  int width_ = 10;
  int height_ = 20;
  HWND parent_ = nullptr;
  HMENU menu_ = nullptr;
  void* creationData_ = nullptr;
};

}  // namespace Win
