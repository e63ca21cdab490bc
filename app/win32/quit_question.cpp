#include "app/win32/quit_question.h"

bool AskToQuit(bool onLine, HWND warningOwner, HWND questionOwner, const char* question) {
  if (onLine) {
    MessageBeep(MB_ICONEXCLAMATION);
    MessageBoxA(warningOwner, "You are still on-line\nOrvalen will not record session if you quit now.",
                "Orvalen Notification", MB_ICONEXCLAMATION | MB_OK);
  }
  return MessageBoxA(questionOwner, question, "", MB_YESNO | MB_ICONQUESTION) != IDNO;
}
