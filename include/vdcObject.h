#pragma once
#include "dtExport.h"
#include "dtVector.h"
#include "vdcColor.h"
#include "vistrelDrawControlPdu.h"

/// DtVdcObject is one drawing in the viewer's scene as the application describes it.
/// Each object owns exactly one draw-control PDU that mirrors its fields. Setters of
/// the concrete classes change the object only; updatePdu() copies the fields into the
/// PDU, which the remote drawer does before every send. Objects never send anything
/// themselves.
class DT_EXPORT DtVdcObject {
 public:
  explicit DtVdcObject(unsigned int id);
  DtVdcObject(const DtVdcObject& other) = default;
  DtVdcObject& operator=(const DtVdcObject& other) = default;
  virtual ~DtVdcObject();

  virtual unsigned int id() const;
  /// Also renames the PDU: its object id follows at once.
  virtual void setId(unsigned int id);
  /// The object's own PDU.
  virtual DtVistrelDrawControlPdu& pdu() = 0;
  /// Copies every field of the object into its PDU.
  virtual void updatePdu() = 0;

 private:
  unsigned int id_;
};

// Accessor groups that several drawing objects declare alike, each group in this order.

/// A field with a copy getter, a reference getter and a setter:
/// `Type get() const`, `Type& get()`, `void set(const Type&)`.
#define DT_VDC_FIELD_ACCESSORS(Type, get, set) \
  virtual Type get() const;                    \
  virtual Type& get();                         \
  virtual void set(const Type& value);

/// The colour of a placed drawing.
#define DT_VDC_COLOR_ACCESSORS DT_VDC_FIELD_ACCESSORS(DtVdcColor, color, setColor)

/// Whether the drawing flashes.
#define DT_VDC_FLASHING_ACCESSORS \
  virtual bool flashing() const;  \
  virtual void setFlashing(bool flashing);

/// The look of a shape on the screen: rotation in radians, colour, fill, stipple
/// pattern (bit mask) and flashing.
#define DT_VDC_2D_STYLE_ACCESSORS                \
  virtual double rotation() const;               \
  virtual void setRotation(double radians);      \
  DT_VDC_COLOR_ACCESSORS                         \
  virtual bool fill() const;                     \
  virtual void setFill(bool fill);               \
  virtual unsigned int pattern() const;          \
  virtual void setPattern(unsigned int pattern); \
  DT_VDC_FLASHING_ACCESSORS

/// The look of a shape in the scene (orientation, colour, flashing), followed by the
/// set-PDU operations that every scene shape runs in this order.
#define DT_VDC_3D_STYLE_ACCESSORS                            \
  DT_VDC_FIELD_ACCESSORS(DtTaitBryan, rotation, setRotation) \
  DT_VDC_COLOR_ACCESSORS                                     \
  DT_VDC_FLASHING_ACCESSORS                                  \
  virtual void setPduAttach();                               \
  virtual void setPduScale();                                \
  virtual void setPduOffset();                               \
  virtual void setPduColor();                                \
  virtual void setPduFlashing();                             \
  virtual void setPduRotation();
