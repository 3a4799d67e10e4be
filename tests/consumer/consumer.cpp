// A program built outside the project against the installed library: two connections in
// one process exchange an orbit command.
#include <cstdio>

#include "vistrelControl.h"

namespace {
int received = 0;
void onPdu(const DtVistrelControlPdu& pdu, void*) {
  if (pdu.viewerCommand() == DtVcOrbit) ++received;
}
}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  DtExerciseConn viewerConn("thread://Consumer", "viewer", static_cast<DtFomMapper*>(nullptr),
                            argv[1]);
  DtVistrelRemoteController listener(&viewerConn);
  listener.addViewModeChangeCallback(&onPdu, nullptr, "0:0:0");
  DtVistrelRemoteController controller("thread://Consumer", "controller",
                                       static_cast<DtFomMapper*>(nullptr), argv[1], "v-1");
  controller.setControllerId("consumer");
  float radius = 10;
  controller.setOrbitMode(nullptr, &radius, nullptr, nullptr, nullptr);
  for (int i = 0; i < 20 && !received; ++i) viewerConn.drainInput(0.05);
  std::printf("consumer received %d orbit command(s)\n", received);
  return received == 1 ? 0 : 1;
}
