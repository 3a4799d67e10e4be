// Draw a small scene in the viewers: a layer holding a line between two entities, a
// label over the first and a status panel with a fuel bar beside the second; then let
// the fuel drop.
//
//   drawScene [FEDERATION [FDD [ENTITY1 [ENTITY2 [SECONDS]]]]]
//
// FEDERATION is a federation URL: "thread://Name" (inside this process), an
// "rti://host:port/Name" served by a hub, or a plain name for the hub on this host.
// ENTITY1 and ENTITY2 are entity ids ("site:application:entity"). The drawings stay for
// SECONDS (default 5); the drawer removes them when it goes away.
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "vistrelControl.h"

int main(int argc, char** argv) {
  const char* federation = argc > 1 ? argv[1] : "VistrelControl";
  const char* fdd = argc > 2 ? argv[2] : VC_EXAMPLE_FDD;
  DtString leader = argc > 3 ? argv[3] : "1:1:1";
  DtString wingman = argc > 4 ? argv[4] : "1:1:2";
  double seconds = argc > 5 ? std::atof(argv[5]) : 5.0;

  // The drawer makes (and owns) its connection; its PDUs are signed "draw-example".
  DtVistrelRemoteDrawer drawer(federation, "draw-example", static_cast<DtFomMapper*>(nullptr), fdd);
  if (!drawer.exerciseConn()->connected()) {
    std::fprintf(stderr, "cannot join %s: %s\n", federation,
                 drawer.exerciseConn()->errorText().c_str());
    return 1;
  }

  // The drawer owns what it is given and sends it at once. Ids are the application's;
  // nextId() hands out unused ones.
  unsigned int layer = drawer.nextId();
  drawer.add(new DtVdcDrawLayerObject(layer, "Formation"));

  // A dashed yellow line from the leader to the wingman, arrow at the wingman.
  unsigned int link = drawer.nextId();
  drawer.add(new DtVdcLine3DObject(link, leader, wingman, 1, DtVector64(), DtVdcColor::DtVdcYellow,
                                   DtVdcSegmentStraight, DtVdcSegmentArrowEnd, 2, 0xF0F0F0F0u,
                                   false, false, false));

  // A label 20 m above the leader.
  unsigned int label = drawer.nextId();
  drawer.add(new DtVdcText3DObject(label, "Lead", leader, DtVector64(0, 0, 20),
                                   DtVdcColor::DtVdcWhite, false));

  // A status panel: the template declares its attributes once, a group shows it. The
  // template must outlive the group, and the drawer deletes lower ids first, so the
  // group takes the lower id. Removing a template also removes whatever the drawer holds
  // under its attributes' ids, so those come from nextId() as well.
  unsigned int statusId = drawer.nextId();
  auto* panel = new DtVdcAttributeGroupTemplateObject(drawer.nextId(), "Status");
  const unsigned int speed = drawer.nextId(), fuel = drawer.nextId();
  panel->createAttributeTemplate(speed, "Speed",
                                 DtVdcAttributeTemplateObject::DtVdcNumericAttribute);
  panel->createAttributeTemplate(fuel, "Fuel", 0.0, 100.0);  // a bar over 0..100
  drawer.add(panel);
  auto* status = new DtVdcAttributeGroupObject(statusId, panel, wingman, DtVector64(0, 0, 10),
                                               DtVdcColor::DtVdcGreen, false);
  status->setNumericAttributeValue(speed, 210);
  status->setValueBarAttributeValue(fuel, 80);
  drawer.add(status);  // the group, then one update per value set

  for (unsigned int id : {link, label, statusId}) drawer.addToLayer(id, layer);

  // Later the fuel drops: the group and the one changed value travel again.
  status->setValueBarAttributeValue(fuel, 65);
  drawer.update(statusId);
  std::printf("drew layer %u: line %u, label %u, status panel %u; fuel now %.0f\n", layer, link,
              label, statusId, status->valueBarAttributeValue(fuel));
  std::fflush(stdout);

  auto until = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (std::chrono::steady_clock::now() < until) drawer.exerciseConn()->drainInput(0.1);
  return 0;
}
