#pragma once
#include "dtExerciseConn.h"
#include "dtExport.h"

/// Teaches a connection the "ViewControl" interaction: installs its decoder, encoder and
/// interaction creator, or warns when the federation's object model lacks the class.
/// Call once per connection before control PDUs flow.
DT_EXPORT void DtVistrelControlRegister(DtExerciseConn* conn);
