// A stand-in for the 3D application in the launch tests. It writes the arguments it was
// given to $STANDIN_ARGUMENTS, one a line, then sets the readiness event named by
// $STANDIN_EVENT as $STANDIN_READY says: "now", "late" (after two seconds) or "never". It
// then runs until it is ended, or for a minute at most so that nothing is left for long.
#include <fcntl.h>
#include <semaphore.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

void SetReadinessEvent(const std::string& name) {
  sem_t* event = sem_open(name.c_str(), O_CREAT, 0600, 0);
  if (event == SEM_FAILED) return;
  sem_post(event);
  sem_close(event);
}

}  // namespace

int main(int argc, char** argv) {
  {
    std::ofstream arguments(Environment("STANDIN_ARGUMENTS"));
    for (int i = 1; i < argc; ++i) arguments << argv[i] << '\n';
  }
  const std::string ready = Environment("STANDIN_READY");
  if (ready == "late") sleep(2);
  if (ready == "now" || ready == "late") SetReadinessEvent(Environment("STANDIN_EVENT"));
  sleep(60);
  return 0;
}
