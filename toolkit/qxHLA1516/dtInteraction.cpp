#include "dtInteraction.h"

#include <RTI/Exception.h>
#include <RTI/RTIambassador.h>

#include <cstring>
#include <vector>

#include "dtExerciseConn.h"
#include "dtPdu.h"
#include "wideText.h"

// ------------------------------------------------------------------ DtInterClassDesc

DtInterClassDesc::DtInterClassDesc(dtrti::RTIambassador* rti, const std::string& name,
                                   dtrti::InteractionClassHandle handle)
    : rti_(rti), name_(name), handle_(handle) {}

bool DtInterClassDesc::parameterHandle(const char* name, dtrti::ParameterHandle* handle) const {
  std::string key = name ? name : "";
  auto it = parameters_.find(key);
  if (it == parameters_.end()) {
    dtrti::ParameterHandle found;
    try {
      if (rti_) found = rti_->getParameterHandle(handle_, dtwide::widen(key));
    } catch (const dtrti::Exception&) {
      // Unknown parameter: remembered as an invalid handle.
    }
    it = parameters_.emplace(key, found).first;
  }
  if (!it->second.isValid()) return false;
  if (handle) *handle = it->second;
  return true;
}

// ------------------------------------------------------------------ DtFomMapper

DtFomMapper::DtFomMapper() = default;
DtFomMapper::~DtFomMapper() = default;

void DtFomMapper::attach(dtrti::RTIambassador* rti) {
  rti_ = rti;
  lastFound_ = nullptr;
  byName_.clear();
}

std::string DtFomMapper::fomName(const char* name) const {
  return name ? name : "";
}

DtInterClassDesc* DtFomMapper::interClassDesc(const char* name) {
  if (!rti_ || !name) return nullptr;
  if (lastFound_ && lastFound_->first == name) return lastFound_->second.get();
  std::string key = name;
  auto it = byName_.find(key);
  if (it != byName_.end()) {
    lastFound_ = &*it;
    return it->second.get();
  }
  std::unique_ptr<DtInterClassDesc> desc;
  try {
    const std::string fom = fomName(name);
    dtrti::InteractionClassHandle handle = rti_->getInteractionClassHandle(dtwide::widen(fom));
    desc.reset(new DtInterClassDesc(rti_, fom, handle));
  } catch (const dtrti::Exception&) {
    // Not in the object model: remembered as null so the RTI is asked only once.
  }
  return byName_.emplace(key, std::move(desc)).first->second.get();
}

DtInterClassDesc* DtFomMapper::interClassDesc(dtrti::InteractionClassHandle handle) {
  for (auto& entry : byName_)
    if (entry.second && entry.second->handle() == handle) return entry.second.get();
  return nullptr;
}

// ------------------------------------------------------------------ DtInteraction

DtInteraction::DtInteraction() = default;
DtInteraction::DtInteraction(const DtInteraction&) = default;
DtInteraction& DtInteraction::operator=(const DtInteraction&) = default;
DtInteraction::~DtInteraction() = default;
void DtInteraction::printData() const {}
const char* DtInteraction::name() const {
  return "DtInteraction";
}
const char* DtInteraction::interactionClassToUse(DtExerciseConn*) const {
  return "";
}

DtInterClassDesc* DtInteraction::classDesc(DtExerciseConn* conn) const {
  if (!conn || !conn->fomMapper()) return nullptr;
  return conn->fomMapper()->interClassDesc(interactionClassToUse(conn));
}

DtInteractionWithEncDec::DtInteractionWithEncDec() = default;
DtInteractionWithEncDec::DtInteractionWithEncDec(const DtInteractionWithEncDec&) = default;
DtInteractionWithEncDec& DtInteractionWithEncDec::operator=(const DtInteractionWithEncDec&) =
    default;
DtInteractionWithEncDec::~DtInteractionWithEncDec() = default;
DtInteractionDecoder* DtInteractionWithEncDec::createDecoder(DtExerciseConn*) const {
  return nullptr;
}
DtInteractionEncoder* DtInteractionWithEncDec::createEncoder(DtExerciseConn*) const {
  return nullptr;
}

// ------------------------------------------------------------------ decoder, encoder

DtInteractionDecoder::DtInteractionDecoder(DtExerciseConn* conn, DtInterClassDesc* classDesc)
    : conn_(conn), classDesc_(classDesc) {}
DtInteractionDecoder::~DtInteractionDecoder() = default;

bool DtInteractionDecoder::addParameterDecoder(const char* parameterName, ParameterFcn fcn) {
  dtrti::ParameterHandle handle;
  if (!classDesc_ || !fcn || !classDesc_->parameterHandle(parameterName, &handle)) return false;
  functions_.emplace_back(handle, fcn);
  return true;
}

void DtInteractionDecoder::decode(DtInteraction* inter,
                                  const dtrti::ParameterHandleValueMap& values) const {
  for (const auto& f : functions_)
    if (values.count(f.first)) f.second(inter, values, f.first);
}

char* DtInteractionDecoder::decodingBuffer(size_t size) {
  thread_local std::vector<char> buffer;
  if (buffer.size() < size) buffer.resize(size);
  return buffer.data();
}

char* DtInteractionDecoder::pduBuffer(const dtrti::VariableLengthData& value) {
  size_t size = value.size();
  // A value that ends inside the header may still hold the length field: the copy must
  // be as long as the padded header claims.
  size_t claimed = static_cast<size_t>(DtPdu::headerLength(value.data(), size));
  size_t room = size;
  if (room < claimed) room = claimed;
  if (room < static_cast<size_t>(DtPdu::kHeaderSize)) room = DtPdu::kHeaderSize;
  char* buffer = decodingBuffer(room);
  if (!buffer) return nullptr;
  if (size) std::memcpy(buffer, value.data(), size);
  std::memset(buffer + size, 0, room - size);
  return buffer;
}

DtInteractionEncoder::DtInteractionEncoder(DtExerciseConn* conn, DtInterClassDesc* classDesc)
    : conn_(conn), classDesc_(classDesc) {}
DtInteractionEncoder::~DtInteractionEncoder() = default;

bool DtInteractionEncoder::addParameterEncoder(const char* parameterName, ParameterFcn fcn) {
  dtrti::ParameterHandle handle;
  if (!classDesc_ || !fcn || !classDesc_->parameterHandle(parameterName, &handle)) return false;
  functions_.emplace_back(handle, fcn);
  return true;
}

void DtInteractionEncoder::encode(const DtInteraction* inter,
                                  dtrti::ParameterHandleValueMap& values) const {
  for (const auto& f : functions_) f.second(inter, values, f.first);
}
