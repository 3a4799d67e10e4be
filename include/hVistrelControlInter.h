#pragma once
#include "dtExerciseConn.h"
#include "dtExport.h"
#include "dtInteraction.h"
#include "vistrelControlPdu.h"

/// DtVistrelControlInteraction is one "ViewControl" interaction: it holds (and owns) one
/// control PDU, which travels as the single parameter "ViewControlPdu". Loading a PDU
/// copies it, so later changes to the original do not reach the interaction.
class DT_EXPORT DtVistrelControlInteraction : public DtInteractionWithEncDec {
 public:
  using Callback = void (*)(DtVistrelControlInteraction* inter, void* usr);

  DtVistrelControlInteraction();
  DtVistrelControlInteraction(const DtVistrelControlInteraction& other);
  DtVistrelControlInteraction& operator=(const DtVistrelControlInteraction& other);
  ~DtVistrelControlInteraction() override;

  /// A new empty interaction: the creator registered for "ViewControl".
  static DtInteraction* create();

  void printData() const override;
  const char* name() const override;
  const char* interactionClassToUse(DtExerciseConn* conn) const override;
  DtInteractionDecoder* createDecoder(DtExerciseConn* conn) const override;
  DtInteractionEncoder* createEncoder(DtExerciseConn* conn) const override;

  /// The held PDU, or null (also when the received bytes were not a control PDU).
  virtual const DtVistrelControlPdu* vcPdu() const;
  /// Holds a copy of `pdu`, made by DtVistrelControlPdu::create from its bytes.
  virtual void setVcPdu(const DtVistrelControlPdu& pdu);
  /// Holds the PDU that DtVistrelControlPdu::createFromNet makes of received bytes.
  virtual void setFromNetPacket(const DtNetPduHeader* bytes);

  /// Calls `cb` with every "ViewControl" interaction the connection receives.
  static void addCallback(DtExerciseConn* conn, Callback cb, void* usr);
  static void removeCallback(DtExerciseConn* conn, Callback cb, void* usr);

 private:
  DtVistrelControlPdu* pdu_ = nullptr;
};
