// What the monitor keeps outside its Monitor objects back to a fresh start in one
// call: the Alarm page's choices and the question about connections without an
// account. A Monitor starts fresh by being made anew.
#pragma once

void ResetMonitorState();
