#include "storage/notice_queue.h"

void NoticeQueue::Queue(NoticeKind kind, const std::string& text) {
  for (const Notice& notice : waiting_) {
    if (notice.kind == kind && notice.text == text) return;
  }
  waiting_.push_back(Notice{kind, text});
}

bool NoticeQueue::Take(Notice* notice) {
  if (waiting_.empty()) return false;
  *notice = waiting_.front();
  waiting_.pop_front();
  return true;
}
