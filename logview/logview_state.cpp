#include "logview/logview_state.h"

LogViewState logViewState;
ReportHooks reportHooks;

void ResetLogViewState() {
  logViewState = LogViewState{};
  reportHooks = ReportHooks{};
}
