#include "hVistrelControlInter.h"

#include "dtOutput.h"
#include "hVistrelControlDecoder.h"
#include "hVistrelControlEncoder.h"

namespace {
const char* const kClassName = "ViewControl";

DtVistrelControlPdu* copyOf(const DtVistrelControlPdu& pdu) {
  // The copy needs the PDU's bytes as they are: create() reads exactly length() bytes
  // from the buffer, which is never shorter than that.
  return DtVistrelControlPdu::create(reinterpret_cast<const DtNetPduHeader*>(pdu.packet()));
}
}  // namespace

DtVistrelControlInteraction::DtVistrelControlInteraction() = default;

DtVistrelControlInteraction::DtVistrelControlInteraction(const DtVistrelControlInteraction& other)
    : DtInteractionWithEncDec(other), pdu_(other.pdu_ ? copyOf(*other.pdu_) : nullptr) {}

DtVistrelControlInteraction& DtVistrelControlInteraction::operator=(
    const DtVistrelControlInteraction& other) {
  if (this != &other) {
    DtInteractionWithEncDec::operator=(other);
    DtVistrelControlPdu* copy = other.pdu_ ? copyOf(*other.pdu_) : nullptr;
    delete pdu_;
    pdu_ = copy;
  }
  return *this;
}

DtVistrelControlInteraction::~DtVistrelControlInteraction() {
  delete pdu_;
}

DtInteraction* DtVistrelControlInteraction::create() {
  return new DtVistrelControlInteraction;
}

void DtVistrelControlInteraction::printData() const {
  if (pdu_) pdu_->print();
}

const char* DtVistrelControlInteraction::name() const {
  return "DtVistrelControlInteraction";
}

const char* DtVistrelControlInteraction::interactionClassToUse(DtExerciseConn*) const {
  return kClassName;
}

DtInteractionDecoder* DtVistrelControlInteraction::createDecoder(DtExerciseConn* conn) const {
  if (DtInterClassDesc* desc = classDesc(conn)) return new DtVistrelControlDecoder(conn, desc);
  DtWarn("Cannot add decoder for FOM class ViewControl\n");
  return nullptr;
}

DtInteractionEncoder* DtVistrelControlInteraction::createEncoder(DtExerciseConn* conn) const {
  if (DtInterClassDesc* desc = classDesc(conn)) return new DtVistrelControlEncoder(conn, desc);
  DtWarn("Cannot add encoder for FOM class ViewControl\n");
  return nullptr;
}

const DtVistrelControlPdu* DtVistrelControlInteraction::vcPdu() const {
  return pdu_;
}

// Both setters make the new PDU before letting the old one go: the argument may be the
// held PDU itself, or its bytes (inter.setVcPdu(*inter.vcPdu())).
void DtVistrelControlInteraction::setVcPdu(const DtVistrelControlPdu& pdu) {
  DtVistrelControlPdu* copy = copyOf(pdu);
  delete pdu_;
  pdu_ = copy;
}

void DtVistrelControlInteraction::setFromNetPacket(const DtNetPduHeader* bytes) {
  DtVistrelControlPdu* made = DtVistrelControlPdu::createFromNet(bytes, nullptr, nullptr);
  delete pdu_;
  pdu_ = made;
}

void DtVistrelControlInteraction::addCallback(DtExerciseConn* conn, Callback cb, void* usr) {
  if (!conn) return;
  conn->addInteractionCallback(kClassName, cb, usr);
  conn->addInteractionCreator(kClassName, &DtVistrelControlInteraction::create);
}

void DtVistrelControlInteraction::removeCallback(DtExerciseConn* conn, Callback cb, void* usr) {
  if (conn) conn->removeInteractionCallback(kClassName, cb, usr);
}
