// A first application: join the federation, tether a viewer to an entity, write a text on
// its screen and print the status report the viewer sends back. docs/writing-an-application.md
// explains it step by step.
//
//   firstApplication FEDERATION FDD VIEWER [ENTITY]
//
// FEDERATION is a federation URL ("rti://host:port/Name", or a plain name for the hub on
// this host), FDD the object model file, VIEWER the viewer's id, ENTITY the entity to
// tether to (default 1:1:1).
#include <cstdio>

#include "vistrelControl.h"

namespace {

// What the callback found, for main() to look at after each drainInput().
struct Report {
  bool arrived = false;
};

// Called from inside drainInput() with every control PDU that comes from the viewer.
void onViewerReport(const DtVistrelControlPdu& pdu, void* usr) {
  // Commands that other controllers send to the same viewer come here too; the viewer's
  // answers are the status forms.
  if (!pdu.statusCommand()) return;
  std::printf("viewer %s reports %s\n", pdu.viewerId().c_str(), DtEnumString(pdu.viewerCommand()));
  if (auto* tether = dynamic_cast<const DtTetherVCPdu*>(&pdu))
    std::printf("  tethered to %s\n", tether->attachId().c_str());
  static_cast<Report*>(usr)->arrived = true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: firstApplication FEDERATION FDD VIEWER [ENTITY]\n");
    return 2;
  }
  const char* federation = argv[1];
  const char* fdd = argv[2];
  const DtString viewer = argv[3];
  const DtString entity = argc > 4 ? argv[4] : "1:1:1";

  // 1. Join. The connection is ours: the controller and the drawer below only borrow it.
  DtExerciseConn conn(federation, "first-app", static_cast<DtFomMapper*>(nullptr), fdd);
  if (!conn.connected()) {
    std::fprintf(stderr, "cannot join: %s\n", conn.errorText().c_str());
    return 1;
  }
  // A federation this connection had to create has nobody in it: the name is misspelt,
  // or the viewer has not joined yet.
  if (conn.createdFederation()) {
    std::fprintf(stderr, "federation %s did not exist: no viewer is in it\n", federation);
    return 1;
  }
  DtVistrelControlRegister(&conn);

  // 2. A controller aimed at one viewer, signing what it sends as "first-app".
  DtVistrelRemoteController controller(&conn, viewer);
  controller.setControllerId("first-app");
  Report report;
  controller.addViewModeChangeCallback(&onViewerReport, &report, viewer);

  // 3. Tether the viewer 50 m behind and 20 m above the entity; a null orientation
  //    leaves the viewer's own.
  const DtVector64 offset(0, -50, 20);
  controller.setTetherMode(&entity, &offset, nullptr);

  // 4. A text in the middle of the viewer's screen. The drawer owns the object from now
  //    on and removes it from the viewers when it goes away, at the end of main().
  DtVistrelRemoteDrawer drawer(&conn);
  drawer.add(new DtVdcText2DObject(drawer.nextId(), "Hello from first-app", DtVdcVector2D(0.5, 0.5),
                                   DtVdcColor::DtVdcYellow, false));

  // 5. Ask for the viewer's state; the answer arrives while drainInput() runs.
  controller.requestCurrentViewMode(viewer);
  if (!conn.connected()) {
    std::fprintf(stderr, "lost the federation: %s\n", conn.errorText().c_str());
    return 1;
  }
  for (int i = 0; i < 50 && !report.arrived && conn.connected(); ++i) conn.drainInput(0.1);
  if (!report.arrived) {
    std::fprintf(stderr, "no report from viewer %s within 5 s%s%s\n", viewer.c_str(),
                 conn.connected() ? "" : ": ", conn.errorText().c_str());
    return 1;
  }
  return 0;
}
