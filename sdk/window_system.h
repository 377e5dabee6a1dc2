/* What the desktop's window system gives a plug-in where the host has windows: the message
   queue of the host's main thread and the list of top-level windows. A host on a system
   without a window system stands in for both with this record, which it exports under
   QAE_WINDOW_SYSTEM_SYMBOL; the plug-in finds it among the process's global symbols. */
#ifndef QAE_SDK_WINDOW_SYSTEM_H
#define QAE_SDK_WINDOW_SYSTEM_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define QAE_WINDOW_SYSTEM_SYMBOL "QaeWindowSystem"

/* One top-level window: its number, the process it belongs to, its owner (0 for none) and
   whether it is shown. */
typedef struct {
  uint64_t number;
  int64_t processId;
  uint64_t owner;
  int32_t visible;
} QaeWindowInfo;

typedef struct {
  /* The top-level windows in the system's order: fills up to capacity, gives how many there are. */
  int32_t (*ListTopLevelWindows)(QaeWindowInfo* windows, int32_t capacity);
  /* Waits up to milliseconds for work pending on the calling thread's queue; returns early,
     with true, when there is some. */
  int32_t (*WaitForInput)(int32_t milliseconds);
  /* Takes one pending piece of work off the calling thread's queue and runs it; 0 when none was pending. */
  int32_t (*DispatchOne)(void);
} QaeWindowSystemRecord;

#ifdef __cplusplus
}
#endif

#endif
