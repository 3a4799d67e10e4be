#pragma once
#include <map>
#include <optional>

#include "dtException.h"
#include "dtExerciseConn.h"
#include "dtExport.h"
#include "dtString.h"
#include "hVistrelControlInter.h"
#include "vdcObject.h"
#include "vistrelDrawControlPdu.h"
#include "vistrelRemoteController.h"

/// DtVistrelRemoteDrawer draws in the viewers: it keeps drawing objects by id, hands
/// out fresh ids, sends an object's PDU when asked to update it, and sends the commands
/// that show, hide, remove and layer objects. It owns every object added to it until
/// remove() hands it back, and removes and deletes the rest when it is destroyed.
///
/// Each PDU leaves through exactly one transport: the connection if there is one, else
/// the custom sender. Only the sender id is stamped into it: draw-control PDUs are not
/// addressed, every viewer that hears them draws.
class DT_EXPORT DtVistrelRemoteDrawer {
 public:
  /// "0:0:0": every viewer.
  static const DtString SEND_TO_ALL;

  /// Sends through an existing connection, which stays the application's; signs with
  /// the connection's identity.
  DtVistrelRemoteDrawer(DtExerciseConn* conn, const DtString& target = SEND_TO_ALL,
                        unsigned int firstId = 1);
  /// Sends through the application's transport, signing with `senderId`.
  DtVistrelRemoteDrawer(DtCustomRemoteControlSender* sender, const DtString& senderId,
                        const DtString& target = SEND_TO_ALL, unsigned int firstId = 1);
  /// Makes (and owns) its own connection; signs with the federate name.
  DtVistrelRemoteDrawer(const char* execName, const char* federateName, DtFomMapper* mapper,
                        const char* fedFileName, const DtString& target = SEND_TO_ALL,
                        unsigned int firstId = 1);
  DtVistrelRemoteDrawer(const char* execName, const char* federateName, const char* fomMapperName,
                        const char* fedFileName, void* fomMapperData,
                        const DtString& target = SEND_TO_ALL, unsigned int firstId = 1);
  /// Removes (with a remove command) and deletes every object still held, lowest id
  /// first, then deletes a connection it made.
  virtual ~DtVistrelRemoteDrawer();
  DtVistrelRemoteDrawer(const DtVistrelRemoteDrawer&) = delete;
  DtVistrelRemoteDrawer& operator=(const DtVistrelRemoteDrawer&) = delete;

  /// A fresh id: the first id given at construction, then one more each call (wrapping
  /// at 2^32). Ids are not checked against the objects held.
  virtual unsigned int nextId();
  /// Takes the object under its id (replacing, without deleting, any object held there)
  /// and sends it; a group template also sends its attribute templates. Returns the id.
  virtual unsigned int add(DtVdcObject* object);
  virtual void addToLayer(unsigned int objectId, unsigned int layerId);
  /// Hands the object back to the caller and tells the viewers to remove it; a group
  /// template takes along those of its attribute templates that were added. Null, and
  /// nothing sent, when no object is held under `id`.
  virtual DtVdcObject* remove(unsigned int id);
  virtual void removeFromLayer(unsigned int objectId, unsigned int layerId);
  /// The object held under `id`, or null; an unknown id is entered empty.
  virtual DtVdcObject* lookup(unsigned int id);
  /// Sends the object held under `id`; throws DtException when there is none.
  virtual void update(unsigned int id);
  virtual void show(unsigned int id);
  /// Shows one attribute of an added attribute group or group template.
  virtual void showAttribute(unsigned int groupId, unsigned int attributeId);
  virtual void hide(unsigned int id);
  virtual void hideAttribute(unsigned int groupId, unsigned int attributeId);
  /// Signs the PDU with the sender id and sends it; throws DtException when the drawer
  /// has neither a connection nor a custom sender.
  virtual void sendDrawControlPdu(DtVistrelDrawControlPdu& pdu);
  /// Brings the object's PDU up to date and sends it; an attribute group then sends the
  /// update PDU of each changed value and marks it clean.
  virtual void update(DtVdcObject* object);
  /// Spares callers the choice between the two overloads above for a plain int (0 is
  /// also a null pointer).
  void update(int id) { update(static_cast<unsigned int>(id)); }

  /// The connection, or null for a drawer on a custom sender.
  DtExerciseConn* exerciseConn() const { return conn_; }
  const DtString& senderId() const { return senderId_; }

 private:
  /// A fresh command PDU; the layer id is written only when given.
  void sendCommand(DtVdcDrawType command, unsigned int objectId,
                   std::optional<unsigned int> layerId = std::nullopt);
  /// The command's attribute form for a group, its template form for anything else.
  void sendAttributeCommand(DtVdcDrawType forGroup, DtVdcDrawType forTemplate, unsigned int groupId,
                            unsigned int attributeId);

  DtExerciseConn* conn_ = nullptr;
  DtCustomRemoteControlSender* sender_ = nullptr;
  unsigned int nextId_;
  std::map<unsigned int, DtVdcObject*> objects_;
  bool ownsConn_ = false;
  // Kept as the constructors received it; draw PDUs are never addressed, so no send reads it.
  DtString target_;
  DtString senderId_;
};
