#pragma once
#include "dtInteraction.h"

/// DtVistrelControlDecoder turns the "ViewControlPdu" parameter back into a PDU object.
class DT_EXPORT DtVistrelControlDecoder : public DtInteractionDecoder {
 public:
  DtVistrelControlDecoder(DtExerciseConn* conn, DtInterClassDesc* classDesc);
  ~DtVistrelControlDecoder() override;

  /// Copies the value into the connection's decoding buffer and hands it to
  /// setFromNetPacket of the interaction.
  static void decodeViewControlPdu(DtInteraction* inter,
                                   const dtrti::ParameterHandleValueMap& values,
                                   dtrti::ParameterHandle handle);
};
