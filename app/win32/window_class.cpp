#include "app/win32/window_class.h"

#include "app/win32/win_exception.h"

#if !defined(_WIN64)
static_assert(sizeof(WNDCLASSEXA) == 48, "Windows 95 expects the 48-byte WNDCLASSEX");
#endif

namespace Win {

WindowClass::WindowClass(HINSTANCE instance, const char* className, WNDPROC windowProcedure)
    : instance_(instance), className_(className), windowProcedure_(windowProcedure), classDescription_() {
  classDescription_.cbSize = sizeof(WNDCLASSEXA);
  classDescription_.style = 0;
  classDescription_.lpfnWndProc = windowProcedure_;
  classDescription_.cbClsExtra = 0;
  classDescription_.cbWndExtra = 0;
  classDescription_.hInstance = instance_;
  classDescription_.hIcon = nullptr;
  classDescription_.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
  classDescription_.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  classDescription_.lpszMenuName = nullptr;
  classDescription_.lpszClassName = className_.c_str();
  classDescription_.hIconSm = nullptr;
}

void WindowClass::Register() {
  if (RegisterClassExA(&classDescription_) == 0) throw WinException("Internal error: RegisterClassEx failed.");
}

}  // namespace Win
