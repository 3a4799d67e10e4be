#pragma once
// Field offsets of the draw-control PDUs. Each family describes its fields once per
// layout (current and version 0) in a table, and its accessors look the offset up in
// the table that matches the bytes; offsets count from the first byte of the PDU.
#include <cstddef>

#include "vistrelDrawControlPdu.h"

namespace vdclayout {

/// A family's offset table for each layout.
template <typename Table>
struct Versions {
  Table current;
  Table v0;
};

/// The table for the layout that `pdu`'s bytes are in. Only parameter version 1 reads
/// as current; a PDU claiming version 2 is read with version-0 offsets, as the viewers
/// that sent such PDUs expected.
template <typename Table>
const Table& of(const Versions<Table>& tables, const DtVistrelDrawControlPdu& pdu) {
  return pdu.paramVersion() == 1 ? tables.current : tables.v0;
}

struct Header {
  size_t objectId;
  size_t type;
};
inline constexpr Versions<Header> kHeader = {{160, 164}, {152, 156}};

/// The anchor part shared by every drawing PDU placed in the scene.
struct Attachable {
  size_t flags;  // bit 2 flashing; the subclasses own the other bits
  size_t kind;
  size_t relativeLocation;
  size_t relativeLocationStep;  // 0: version 0 keeps one value for both attach points
  size_t color;
  size_t entity[2];
  size_t objectId[2];
  size_t position[2];
  size_t offset;
};
inline constexpr Versions<Attachable> kAttachable = {
    {158, 168, 170, 1, 172, {176, 240}, {304, 308}, {312, 336}, 360},
    {160, 161, 162, 0, 164, {168, 232}, {296, 300}, {304, 328}, 352}};

}  // namespace vdclayout
