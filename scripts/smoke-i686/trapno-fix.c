/* Preloaded into the emulated 32-bit Wine processes of scripts/smoke-i686.sh.
 *
 * qemu 7.2's user mode writes trapno = -1 into the context of every signal it
 * delivers. Wine decides what a fault was from trapno, so every access violation
 * became "unexpected trap -1" and an illegal instruction. This library wraps the
 * handlers Wine installs and, before they run, rebuilds trapno from the signal
 * number and si_code as the kernel would have set it.
 *
 * Freestanding on purpose (built with gcc -m32 -nostdlib, no i386 headers
 * needed): it calls only libc's __sigaction, resolved when it is loaded. */

#define NSIG_MAX 65
#define SA_SIGINFO_FLAG 4

enum { SIG_ILL = 4, SIG_TRAP = 5, SIG_BUS = 7, SIG_FPE = 8, SIG_SEGV = 11 };

/* glibc's i386 struct sigaction: handler, mask (128 bytes), flags, restorer. */
struct ksa {
  void *handler;
  unsigned long mask[32];
  int flags;
  void (*restorer)(void);
};

typedef void (*info_handler)(int, void *, void *);

extern int __sigaction(int, const struct ksa *, struct ksa *);

static info_handler wrapped[NSIG_MAX];

/* i386 ucontext: flags, link, stack (12 bytes), then the registers; trapno is
 * register 12. siginfo: signo, errno, code. */
#define TRAPNO_OFFSET (20 + 12 * 4)

static int trap_of(int sig, int code) {
  switch (sig) {
    case SIG_SEGV: return (code == 1 || code == 2) ? 14 : 13; /* page fault : GP */
    case SIG_BUS: return 17;
    case SIG_ILL: return 6;
    case SIG_TRAP: return code == 2 ? 1 : 3;                 /* trace : breakpoint */
    case SIG_FPE: return code == 1 ? 0 : code == 2 ? 4 : 16; /* div, overflow, x87 */
    default: return -1;
  }
}

static void fixer(int sig, void *info, void *context) {
  int *trapno = (int *)((char *)context + TRAPNO_OFFSET);
  if (*trapno == -1 && info) *trapno = trap_of(sig, ((int *)info)[2]);
  wrapped[sig](sig, info, context);
}

int sigaction(int sig, const struct ksa *act, struct ksa *old) {
  int fault = sig == SIG_SEGV || sig == SIG_ILL || sig == SIG_TRAP || sig == SIG_FPE || sig == SIG_BUS;
  if (!fault || !act || !(act->flags & SA_SIGINFO_FLAG)) {
    if (fault && act) wrapped[sig] = 0;
    int rc = __sigaction(sig, act, old);
    if (rc == 0 && old && old->handler == (void *)fixer) old->handler = (void *)wrapped[sig];
    return rc;
  }
  struct ksa mine = *act;
  info_handler previous = wrapped[sig];
  wrapped[sig] = (info_handler)act->handler;
  mine.handler = (void *)fixer;
  int rc = __sigaction(sig, &mine, old);
  if (rc != 0) wrapped[sig] = previous;
  else if (old && old->handler == (void *)fixer) old->handler = (void *)previous;
  return rc;
}
