#include "vistrelControlRegister.h"

#include "dtOutput.h"
#include "hVistrelControlDecoder.h"
#include "hVistrelControlEncoder.h"
#include "hVistrelControlInter.h"

void DtVistrelControlRegister(DtExerciseConn* conn) {
  DtInterClassDesc* desc =
      conn && conn->fomMapper() ? conn->fomMapper()->interClassDesc("ViewControl") : nullptr;
  if (!desc) {
    DtWarn("Can't add decoders and encoders for interaction class ViewControl: Not in FOM.\n");
    return;
  }
  conn->addDecoder(desc->handle(), new DtVistrelControlDecoder(conn, desc));
  conn->addEncoder(desc->handle(), new DtVistrelControlEncoder(conn, desc));
  conn->addInteractionCreator("ViewControl", &DtVistrelControlInteraction::create);
}
