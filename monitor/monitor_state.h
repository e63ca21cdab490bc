// The monitor's whole state back to a fresh start in one call: the session, the
// probe and its texts, the alarm, the question about connections without an
// account, and the session's hooks. ResetSessionState() alone is a new process's
// start for the session (its hooks stay, as the window that set them does).
#pragma once

void ResetMonitorState();
