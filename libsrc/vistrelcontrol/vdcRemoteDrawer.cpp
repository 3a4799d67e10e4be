#include "vdcRemoteDrawer.h"

#include "dtException.h"
#include "vcOutgoingInteraction.h"
#include "vdcAttGroup.h"
#include "vdcAttTemplate.h"
#include "vdcCommandPdu.h"

const DtString DtVistrelRemoteDrawer::SEND_TO_ALL("0:0:0");

namespace {
bool hasType(DtVdcObject* object, DtVdcDrawType type) {
  return object->pdu().type() == static_cast<unsigned int>(type);
}

// Group templates and groups are told apart by the type in their PDU, as the viewer
// tells them apart.
DtVdcAttributeGroupTemplateObject* asGroupTemplate(DtVdcObject* object) {
  if (!hasType(object, DtVdcAttributeGroupTemplate)) return nullptr;
  return dynamic_cast<DtVdcAttributeGroupTemplateObject*>(object);
}

DtVdcAttributeGroupObject* asGroup(DtVdcObject* object) {
  if (!hasType(object, DtVdcAttributeGroup)) return nullptr;
  return dynamic_cast<DtVdcAttributeGroupObject*>(object);
}
}  // namespace

// ------------------------------------------------------------------ construction

DtVistrelRemoteDrawer::DtVistrelRemoteDrawer(DtExerciseConn* conn, const DtString& target,
                                             unsigned int firstId)
    : conn_(conn), nextId_(firstId), target_(target), senderId_(conn ? conn->identity() : "") {}

DtVistrelRemoteDrawer::DtVistrelRemoteDrawer(DtCustomRemoteControlSender* sender,
                                             const DtString& senderId, const DtString& target,
                                             unsigned int firstId)
    : sender_(sender), nextId_(firstId), target_(target), senderId_(senderId) {}

DtVistrelRemoteDrawer::DtVistrelRemoteDrawer(const char* execName, const char* federateName,
                                             DtFomMapper* mapper, const char* fedFileName,
                                             const DtString& target, unsigned int firstId)
    : conn_(new DtExerciseConn(execName, federateName, mapper, fedFileName)),
      nextId_(firstId),
      ownsConn_(true),
      target_(target),
      senderId_(federateName) {}

DtVistrelRemoteDrawer::DtVistrelRemoteDrawer(const char* execName, const char* federateName,
                                             const char* fomMapperName, const char* fedFileName,
                                             void* fomMapperData, const DtString& target,
                                             unsigned int firstId)
    : conn_(new DtExerciseConn(execName, federateName, fomMapperName, fedFileName, fomMapperData)),
      nextId_(firstId),
      ownsConn_(true),
      target_(target),
      senderId_(federateName) {}

// Lowest id first, so the viewer sees the removals in a predictable order.
DtVistrelRemoteDrawer::~DtVistrelRemoteDrawer() {
  while (!objects_.empty()) {
    auto first = objects_.begin();
    DtVdcObject* object = first->second;
    if (object)
      delete remove(first->first);
    else
      objects_.erase(first);
  }
  if (ownsConn_) delete conn_;
}

// ------------------------------------------------------------------ the object table

unsigned int DtVistrelRemoteDrawer::nextId() {
  return nextId_++;
}

unsigned int DtVistrelRemoteDrawer::add(DtVdcObject* object) {
  if (!object) return 0;
  objects_[object->id()] = object;
  update(object);
  // The attribute templates travel with their group template but are not held.
  if (DtVdcAttributeGroupTemplateObject* groupTemplate = asGroupTemplate(object))
    for (DtVdcAttributeTemplateObject* attribute : groupTemplate->attributeTemplates())
      update(attribute);
  return object->id();
}

DtVdcObject* DtVistrelRemoteDrawer::lookup(unsigned int id) {
  return objects_[id];
}

// An empty entry left by lookup holds nothing to remove: it goes without a command.
DtVdcObject* DtVistrelRemoteDrawer::remove(unsigned int id) {
  auto found = objects_.find(id);
  if (found == objects_.end()) return nullptr;
  DtVdcObject* object = found->second;
  if (!object) {
    objects_.erase(found);
    return nullptr;
  }
  if (DtVdcAttributeGroupTemplateObject* groupTemplate = asGroupTemplate(object))
    for (DtVdcAttributeTemplateObject* attribute : groupTemplate->attributeTemplates())
      remove(attribute->id());
  // The recursion may have erased entries: erase by id, not by the iterator.
  objects_.erase(id);
  sendCommand(DtVdcCommandRemove, id);
  return object;
}

void DtVistrelRemoteDrawer::update(unsigned int id) {
  DtVdcObject* object = lookup(id);
  if (!object) DT_THROW("vdc object not found");
  update(object);
}

void DtVistrelRemoteDrawer::update(DtVdcObject* object) {
  if (!object) return;
  object->updatePdu();
  sendDrawControlPdu(object->pdu());
  DtVdcAttributeGroupObject* group = asGroup(object);
  if (!group) return;
  // Only the values that changed since the last update travel.
  for (auto& [attributeId, value] : group->attributeValueMap()) {
    if (!value) continue;
    group->updateAttributePdu(attributeId);
    if (!value->dirty()) continue;
    sendDrawControlPdu(value->attributeUpdatePdu());
    value->setDirty(false);
  }
}

// ------------------------------------------------------------------ commands

void DtVistrelRemoteDrawer::show(unsigned int id) {
  sendCommand(DtVdcCommandShow, id);
}
void DtVistrelRemoteDrawer::hide(unsigned int id) {
  sendCommand(DtVdcCommandHide, id);
}

void DtVistrelRemoteDrawer::addToLayer(unsigned int objectId, unsigned int layerId) {
  sendCommand(DtVdcCommandAddToLayer, objectId, layerId);
}

void DtVistrelRemoteDrawer::removeFromLayer(unsigned int objectId, unsigned int layerId) {
  sendCommand(DtVdcCommandRemoveFromLayer, objectId, layerId);
}

void DtVistrelRemoteDrawer::showAttribute(unsigned int groupId, unsigned int attributeId) {
  sendAttributeCommand(DtVdcCommandShowAttribute, DtVdcCommandShowTemplateAttribute, groupId,
                       attributeId);
}

void DtVistrelRemoteDrawer::hideAttribute(unsigned int groupId, unsigned int attributeId) {
  sendAttributeCommand(DtVdcCommandHideAttribute, DtVdcCommandHideTemplateAttribute, groupId,
                       attributeId);
}

// The command names the attribute; the group travels in the layer id field.
void DtVistrelRemoteDrawer::sendAttributeCommand(DtVdcDrawType forGroup, DtVdcDrawType forTemplate,
                                                 unsigned int groupId, unsigned int attributeId) {
  auto found = objects_.find(groupId);
  bool group =
      found != objects_.end() && found->second && hasType(found->second, DtVdcAttributeGroup);
  sendCommand(group ? forGroup : forTemplate, attributeId, groupId);
}

void DtVistrelRemoteDrawer::sendCommand(DtVdcDrawType command, unsigned int objectId,
                                        std::optional<unsigned int> layerId) {
  DtVdcCommandPdu pdu;
  pdu.setType(DtNetU32(static_cast<unsigned int>(command)));
  pdu.setObjectId(DtNetU32(objectId));
  if (layerId) pdu.setLayerId(DtNetU32(*layerId));
  sendDrawControlPdu(pdu);
}

// ------------------------------------------------------------------ sending

void DtVistrelRemoteDrawer::sendDrawControlPdu(DtVistrelDrawControlPdu& pdu) {
  pdu.setSenderId(senderId_);
  if (conn_) {
    DtVcOutgoingInteraction inter(pdu);
    conn_->sendInteraction(inter);
  } else if (sender_) {
    sender_->send(static_cast<const DtVistrelDrawControlPdu&>(pdu).packet(), pdu.length());
  } else {
    DT_THROW("No send mechanism in VistrelRemoteDrawer");
  }
}
