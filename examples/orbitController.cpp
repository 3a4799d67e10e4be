// Steer a viewer into orbit around an entity and print the mode it reports back.
//
//   orbitController [FEDERATION [FDD [VIEWER [ENTITY]]]]
//
// FEDERATION is a federation URL: "thread://Name" (inside this process), an
// "rti://host:port/Name" served by a hub, or a plain name for the hub on this host.
// VIEWER is the id of the viewer to steer ("0:0:0" steers every viewer).
#include <cstdio>
#include <cstdlib>

#include "vistrelControl.h"

namespace {

bool answered = false;

// The viewer answers a state request with the status form (command + 500) of its mode.
void onViewModeChange(const DtVistrelControlPdu& pdu, void*) {
  if (!pdu.statusCommand()) return;
  answered = true;
  std::printf("viewer %s reports %s\n", pdu.viewerId().c_str(), DtEnumString(pdu.viewerCommand()));
  if (auto* orbit = dynamic_cast<const DtOrbitVCPdu*>(&pdu))
    std::printf("  orbiting %s at radius %.1f\n", orbit->attachId().c_str(), orbit->radius());
  pdu.printData();
}

}  // namespace

int main(int argc, char** argv) {
  const char* federation = argc > 1 ? argv[1] : "VistrelControl";
  const char* fdd = argc > 2 ? argv[2] : VC_EXAMPLE_FDD;
  DtString viewer = argc > 3 ? argv[3] : "0:0:0";
  DtString entity = argc > 4 ? argv[4] : "1:1:1";

  // The controller makes (and owns) its connection to the federation.
  DtVistrelRemoteController controller(federation, "orbit-example",
                                       static_cast<DtFomMapper*>(nullptr), fdd, viewer);
  if (!controller.exerciseConn()->connected()) {
    std::fprintf(stderr, "cannot join %s: %s\n", federation,
                 controller.exerciseConn()->errorText().c_str());
    return 1;
  }
  controller.setControllerId("orbit-example");
  controller.addViewModeChangeCallback(&onViewModeChange, nullptr, viewer);

  // Only the arguments given are applied; the viewer keeps its heading and pitch.
  float radius = 500.0f;
  float azimuthRate = 0.1f;
  controller.setOrbitMode(&entity, &radius, nullptr, nullptr, &azimuthRate);
  controller.requestCurrentViewMode(viewer);

  // Answers arrive while the application lets its connection process traffic.
  for (int i = 0; i < 50 && !answered; ++i) controller.exerciseConn()->drainInput(0.1);
  if (!answered) {
    std::fprintf(stderr, "no answer from viewer %s within 5 seconds\n", viewer.c_str());
    return 1;
  }
  return 0;
}
