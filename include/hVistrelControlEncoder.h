#pragma once
#include "dtInteraction.h"

/// DtVistrelControlEncoder puts the held PDU's bytes into the "ViewControlPdu" parameter.
class DT_EXPORT DtVistrelControlEncoder : public DtInteractionEncoder {
 public:
  DtVistrelControlEncoder(DtExerciseConn* conn, DtInterClassDesc* classDesc);
  ~DtVistrelControlEncoder() override;

  /// Adds the PDU's bytes (exactly its length) under `handle`; nothing for an empty
  /// interaction.
  static void encodeViewControlPdu(const DtInteraction* inter,
                                   dtrti::ParameterHandleValueMap& values,
                                   dtrti::ParameterHandle handle);
};
