// Shows the notices the core queued (storage/notice_queue.h) through the window
// layer's hooks. The shell calls it after every tick, timer, save and start-up
// step has returned, never inside one. A box shown here runs ticks in its own
// message loop; notices they queue wait until it closes.
#pragma once

void ShowPendingNotices();
