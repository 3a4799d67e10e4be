#include "vistrelControlRegister.h"

#include "dtOutput.h"
#include "hVistrelControlDecoder.h"
#include "hVistrelControlEncoder.h"
#include "hVistrelControlInter.h"

void DtVistrelControlRegister(DtExerciseConn* conn) {
  // "Not in FOM" only when there is an object model to look in: without a connection, or
  // on one that never joined, the object model is unknown, and saying so points the
  // application at the real fault.
  if (!conn) {
    DtWarn(
        "Can't add decoders and encoders for interaction class ViewControl: "
        "no exercise connection given.\n");
    return;
  }
  DtInterClassDesc* desc =
      conn->fomMapper() ? conn->fomMapper()->interClassDesc("ViewControl") : nullptr;
  if (!desc && !conn->connected()) {
    DtWarn(
        "Can't add decoders and encoders for interaction class ViewControl: "
        "the connection has not joined a federation.\n");
    return;
  }
  if (!desc) {
    DtWarn("Can't add decoders and encoders for interaction class ViewControl: Not in FOM.\n");
    return;
  }
  conn->addDecoder(desc->handle(), new DtVistrelControlDecoder(conn, desc));
  conn->addEncoder(desc->handle(), new DtVistrelControlEncoder(conn, desc));
  conn->addInteractionCreator("ViewControl", &DtVistrelControlInteraction::create);
}
