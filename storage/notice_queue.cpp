#include "storage/notice_queue.h"

#include <deque>

namespace {

std::deque<Notice> waiting;

}  // namespace

void QueueNotice(NoticeKind kind, const std::string& text) {
  for (const Notice& notice : waiting) {
    if (notice.kind == kind && notice.text == text) return;
  }
  waiting.push_back(Notice{kind, text});
}

bool TakeNotice(Notice* notice) {
  if (waiting.empty()) return false;
  *notice = waiting.front();
  waiting.pop_front();
  return true;
}

void ClearNotices() { waiting.clear(); }
