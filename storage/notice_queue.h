// What the core has to tell or ask the user. Nothing is shown inside a session
// step, a save or a recovery: a box's message loop runs the next ticks, which
// would find the state half changed. The notices wait here, oldest first, and
// the shell shows them once the step has returned (Monitor::ShowPendingNotices).
#pragma once
#include <deque>
#include <string>

enum class NoticeKind {
  kFileProblem,    // a file not read or not saved, a damaged checkpoint: the text
  kOutOfSpace,     // a session that did not fit in the log
  kAccountCheck,   // the questions about connections without an account
  kAlarmReminder,  // the alarm's reminder: the text; its sound, box or both
  kUsageWarning,   // a usage warning: the text, with the alarm's sound when it has one
};

struct Notice {
  NoticeKind kind = NoticeKind::kFileProblem;
  std::string text;
};

class NoticeQueue {
 public:
  // A notice already waiting is not queued twice.
  void Queue(NoticeKind kind, const std::string& text = std::string());
  // The oldest waiting notice, taken off the queue; false when none waits.
  bool Take(Notice* notice);
  void Clear() { waiting_.clear(); }

 private:
  std::deque<Notice> waiting_;
};
