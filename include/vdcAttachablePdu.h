#pragma once
#include "dtVector.h"
#include "vistrelDrawControlPdu.h"

/// DtVdcAttachablePdu is the part shared by every drawing placed in the scene: up to two
/// attach points, each a free position, a simulation entity or another drawing object,
/// with a relative location along the drawing, an offset, a colour and a flashing flag.
/// All three kinds of anchor are stored side by side; the attachment kind says which the
/// viewer uses. Current layout: flag byte 158, kind 168, relative locations 170 and 171,
/// colour 172, entities 176 and 240, object ids 304 and 308, positions 312 and 336,
/// offset 360, subclass fields from 384. Version 0 moves the flag byte to 160 beside the
/// kind (161), keeps one relative location (162) and starts everything else 8 bytes
/// earlier.
class DT_EXPORT DtVdcAttachablePdu : public DtVistrelDrawControlPdu {
 public:
  /// Where the drawing is anchored; where a kind names two things, the first is attach
  /// point 1 and the second attach point 2, and "NoAttach" is a free position.
  enum DtVcObjectAttachment : int {
    DtVcObjectNoAttach = 0,
    DtVcObjectNoAttachNoAttach = 1,
    DtVcObjectAttachedToEntity = 2,
    DtVcObjectAttachedToObject = 3,
    DtVcObjectAttachedToEntityNoAttach = 4,
    DtVcObjectAttachedToObjectNoAttach = 5,
    DtVcObjectAttachedToNoAttachEntity = 6,
    DtVcObjectAttachedToNoAttachObject = 7,
    DtVcObjectAttachedToEntityObject = 8,
    DtVcObjectAttachedToObjectEntity = 9,
    DtVcObjectAttachedToEntityEntity = 10,
    DtVcObjectAttachedToObjectObject = 11
  };

  ~DtVdcAttachablePdu() override;

  virtual DtVcObjectAttachment attachmentType() const;
  /// A screen position in percent: two signed bytes, x and y, each divided by 100; the
  /// z of position 1 stays as it was.
  virtual void attachTo(const char* percent);
  virtual void attachTo(const char* percent1, const char* percent2);
  virtual void attachTo(const DtVector64& position);
  virtual void attachTo(DtNetU32 objectId);
  virtual void attachTo(const DtString& entity);
  virtual void attachTo(DtNetU32 objectId1, DtNetU32 objectId2);
  virtual void attachTo(const DtString& entity1, const DtString& entity2);
  virtual void attachTo(const DtVector64& position1, const DtVector64& position2);
  virtual void attachTo(const DtString& entity1, DtNetU32 objectId2);
  virtual void attachTo(DtNetU32 objectId1, const DtString& entity2);
  virtual void attachTo(const DtString& entity1, const DtVector64& position2);
  virtual void attachTo(const DtVector64& position1, const DtString& entity2);
  virtual void attachTo(DtNetU32 objectId1, const DtVector64& position2);
  virtual void attachTo(const DtVector64& position1, DtNetU32 objectId2);
  /// Attach point `which` (0 or 1; not checked) in the current layout; version 0 has
  /// one value for both points.
  virtual void setRelativeLocation(unsigned char percent, int which);
  virtual unsigned char relativeLocation(int which) const;
  virtual void setOffset(const DtVector64& offset);
  virtual DtVector64 offset() const;
  /// Anchors of attach point `i` (0 or 1); any other index gives an empty string, 0 or
  /// the zero vector.
  virtual DtString attachEntityId(int i) const;
  virtual DtNetU32 attachObjectId(int i) const;
  virtual DtVector64 position(int i) const;
  /// Red, green, blue, alpha.
  virtual void setColor(unsigned char* rgba);
  /// The four colour bytes in place, valid while the PDU and its buffer live.
  virtual unsigned char* color() const;
  virtual void setFlashing(bool flashing);
  virtual bool flashing() const;
  virtual void setAttachmentType(DtVcObjectAttachment kind);

  using DtVistrelDrawControlPdu::typeString;
  static const char* typeString(DtVcObjectAttachment kind);

  void printData() const override;
  /// Object id, type, kind, position 1, position 2's x with position 1's y and z,
  /// entities, object ids, relative location 1, colour and flashing: 19 fields.
  const char* string() const override;
  /// Reads the 19 fields back; position 2 takes the three numbers as written, and the
  /// relative location is skipped.
  void setFromString(const char* text) override;

 protected:
  DtVdcAttachablePdu();

  /// The default anchoring of a new drawing: both attach points (version 0 has one).
  void setRelativeLocations(unsigned char percent);
  /// The flag byte of the layout the bytes are in, which subclasses share.
  size_t flagByteOffset() const;
  void setFlagBits(unsigned int mask, bool on);
};
