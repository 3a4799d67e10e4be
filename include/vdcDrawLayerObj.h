#pragma once
#include "dtString.h"
#include "vdcLayerPdu.h"
#include "vdcObject.h"

/// DtVdcDrawLayerObject names a draw layer in the viewer (type 2590): a group of
/// drawing objects handled together. The remote drawer moves objects into and out of
/// it by this object's id (addToLayer, removeFromLayer). The name is fixed.
class DT_EXPORT DtVdcDrawLayerObject : public DtVdcObject {
 public:
  DtVdcDrawLayerObject(unsigned int id, const DtString& layerName);
  ~DtVdcDrawLayerObject() override;

  DtVdcLayerPdu& pdu() override;
  /// The name.
  void updatePdu() override;

  virtual DtString layerName() const;

 private:
  DtString layerName_;
  DtVdcLayerPdu pdu_;
};
