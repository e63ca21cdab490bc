// Description of a window class, registered once by the entry point.
#pragma once
#include <windows.h>

#include <string>

namespace Win {

class WindowClass {
 public:
  WindowClass(HINSTANCE instance, const char* className, WNDPROC windowProcedure);
  // Registers the class; throws WinException when the system refuses.
  void Register();
  const char* GetName() const { return className_.c_str(); }

 private:
  HINSTANCE instance_;
  std::string className_;
  WNDPROC windowProcedure_;
  WNDCLASSEXA classDescription_;
};

}  // namespace Win
