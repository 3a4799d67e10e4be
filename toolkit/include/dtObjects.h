#pragma once
// HLA object instances through an exercise connection, without the RTI's types: a viewer
// follows instances of the classes it subscribes to, a simulation registers, updates and
// deletes its own. Values are the attributes' encoded bytes; what they mean is the
// object model's business, not the connection's.
#include <cstddef>
#include <string>
#include <vector>

#include "dtExport.h"

/// An object instance as the connection numbers it: one number per instance for the
/// connection's lifetime, never reused. 0 is no instance.
using DtObjectId = unsigned long long;

/// One attribute's value: `index` is the attribute's place in the list of names given
/// when subscribing or registering; the bytes are valid only during the call.
struct DtAttributeValue {
  int index;
  const unsigned char* data;
  std::size_t size;
};

/// DtObjectListener is told of the instances of the classes a connection subscribed it
/// to, inside the application's drainInput(), in the order the RTI reports them.
class DT_EXPORT DtObjectListener {
 public:
  virtual ~DtObjectListener();
  /// A new instance, known here as `className` (the most specific subscribed class its
  /// own class derives from), with the RTI's name for it.
  virtual void objectDiscovered(DtObjectId id, const std::string& className,
                                const std::string& instanceName) = 0;
  /// New values for some of its subscribed attributes (`count` of them, each once).
  virtual void objectReflected(DtObjectId id, const DtAttributeValue* values, int count) = 0;
  /// The instance was deleted, or its owner left the federation.
  virtual void objectRemoved(DtObjectId id) = 0;
};
