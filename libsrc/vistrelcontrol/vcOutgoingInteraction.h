#pragma once
// The interaction that a send builds around the caller's PDU for the length of that one
// send. Internal to the library.
#include "hVistrelControlInter.h"

/// Loading a PDU into an interaction copies it (setVcPdu), but an interaction that only
/// lives while the connection encodes it needs no copy of its own: it lends the caller's
/// PDU to the encoder instead, whenever the copy would carry exactly the same bytes,
/// which is all the connection ever sees of it. Otherwise it holds the copy as usual.
class DtVcOutgoingInteraction final : public DtVistrelControlInteraction {
 public:
  explicit DtVcOutgoingInteraction(const DtVistrelControlPdu& pdu);
  ~DtVcOutgoingInteraction() override;
  DtVcOutgoingInteraction(const DtVcOutgoingInteraction&) = delete;
  DtVcOutgoingInteraction& operator=(const DtVcOutgoingInteraction&) = delete;

  const DtVistrelControlPdu* vcPdu() const override;
  void printData() const override;

  /// Whether the copy that setVcPdu makes of `pdu` has the same bytes as `pdu`.
  static bool copyKeepsBytes(const DtVistrelControlPdu& pdu);

 private:
  const DtVistrelControlPdu* lent_ = nullptr;
};
