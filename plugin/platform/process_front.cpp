#include "plugin/platform/process_front.h"

#include <signal.h>

bool ContinueProcess(pid_t id) { return id > 0 && kill(id, SIGCONT) == 0; }
