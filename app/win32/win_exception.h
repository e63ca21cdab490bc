// Thrown when the main window class cannot be registered; nothing catches it.
#pragma once
#include <windows.h>

namespace Win {

class WinException {
 public:
  WinException(const char* message) : errorCode_(GetLastError()), message_(message) {}
  DWORD GetError() const { return errorCode_; }
  const char* GetMessage() const { return message_; }

 private:
  DWORD errorCode_;
  const char* message_;
};

}  // namespace Win
