#pragma once
#include "dtNetTypes.h"
#include "dtString.h"
#include "vistrelControlPdu.h"

/// Draw types: what a draw-control PDU creates or does. The numbers are on the wire and
/// come in decades, one per PDU family; a family's general kind (2510, 2520, ...) is also
/// the viewer command of its PDUs. Received bytes may hold any number, hence the fixed
/// underlying type.
enum DtVdcDrawType : int {
  DtVdcUndefined = 2489,
  DtVdcCommand = 2510,
  DtVdcCommandRemove = 2511,
  DtVdcCommandHide = 2512,
  DtVdcCommandShow = 2513,
  DtVdcCommandAddToLayer = 2514,
  DtVdcCommandRemoveFromLayer = 2515,
  // Attribute commands of the remote drawer: they name an attribute and carry its group
  // in the layer id. The type names of the dumps do not list them.
  DtVdcCommandShowAttribute = 2516,
  DtVdcCommandShowTemplateAttribute = 2517,
  DtVdcCommandHideAttribute = 2518,
  DtVdcCommandHideTemplateAttribute = 2519,
  DtVdcLine = 2520,
  DtVdc2DLine = 2521,
  DtVdc3DLine = 2522,
  DtVdcSegmentedLine = 2530,
  DtVdc2DSegmentedLine = 2531,
  DtVdc3DSegmentedLine = 2532,
  DtVdcPolyObject = 2540,
  DtVdcCircle = 2541,
  DtVdcSphere = 2542,
  DtVdcSquare = 2543,
  DtVdcCube = 2544,
  DtVdcCylinder = 2545,
  DtVdcTriangle = 2550,
  DtVdc2DTriangle = 2551,
  DtVdc3DTriangle = 2552,
  DtVdcArea = 2553,
  DtVdc3DArea = 2555,
  DtVdcText = 2560,
  DtVdc2DText = 2561,
  DtVdc3DText = 2562,
  DtVdcAttribute = 2570,
  DtVdcAttributeGroupTemplate = 2571,
  DtVdcAttributeGroup = 2572,
  DtVdcAttributeNoValue = 2573,
  DtVdcAttributeSingleValue = 2574,
  DtVdcAttributeGraphicSingleValue = 2575,
  DtVdcAttributeGraphicListValue = 2576,
  DtVdcAttributeBitmap = 2577,
  DtVdcAttributeUpdate = 2580,
  DtVdcAttributeValueSet = 2581,
  DtVdcAttributeValueReset = 2582,
  DtVdcAttributeValueSetText = 2583,
  DtVdcLayer = 2590
};

/// DtVistrelDrawControlPdu is the base of every PDU that creates, changes or commands a
/// drawing object in the viewer's scene. Behind the common header it carries the object
/// id and draw type, in one of two layouts: the current one starts with the marker
/// 0x600DF00D and a parameter version (object id at 160, type at 164, body at 168);
/// version 0 has no marker (object id at 152, type at 156, body at 160). The layout is
/// read from the bytes on every access, so any class reads either.
class DT_EXPORT DtVistrelDrawControlPdu : public DtVistrelControlPdu {
 public:
  static constexpr unsigned int kParamVersionMarker = 0x600DF00Du;

  ~DtVistrelDrawControlPdu() override;

  virtual DtNetU32 objectId() const;
  virtual void setObjectId(DtNetU32 id);
  virtual void setType(DtNetU32 type);
  virtual DtNetU32 type() const;
  /// The 16 bits at 156 when the marker stands at 152, otherwise 0. Only 1 selects the
  /// current layout; any other number is read with the version-0 offsets.
  virtual unsigned int paramVersion() const;
  /// Makes `text` the end of the PDU: the PDU becomes exactly offset + length bytes long
  /// (growing or shrinking), with no terminator. An empty text changes nothing. Returns
  /// the number of bytes stored.
  virtual int setInternalText(DtString text, unsigned long offset);
  /// `length` bytes at `offset` as text (up to the first NUL).
  virtual DtString internalText(int length, unsigned long offset) const;
  /// Writes the marker and the low 16 bits of `version`; 0 writes nothing, so a PDU
  /// that has the marker keeps it.
  virtual void setParamVersion(unsigned int version);

  /// Name of a draw type, or "UnknownEnum".
  static const char* typeString(int type);

  void printData() const override;

 protected:
  DtVistrelDrawControlPdu();

  /// Sizes a fresh PDU, sets its viewer command and (unless 0) its parameter version.
  /// True when the PDU owns its fresh, zero-filled buffer, the only case in which the
  /// classes write their defaults: bytes lent by a place holder are the lender's.
  bool initFresh(int length, DtBufferPlaceHolder* holder, int command, unsigned int version);
  /// Takes a copy of received bytes and stamps the family's viewer command on them.
  void initReceived(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                    DtPduFactory* factory, int command);

  /// A text stored behind its 32-bit length field.
  void setCountedText(size_t lengthOffset, size_t textOffset, const DtString& text);
  DtString countedText(size_t lengthOffset, size_t textOffset) const;

  /// Pointer to `count` bytes of the buffer at `offset`, or null when they lie outside
  /// the allocation. For the accessors that hand out colour bytes in place.
  unsigned char* bytesAt(size_t offset, size_t count) const;

 private:
  mutable DtString internalText_;
};
