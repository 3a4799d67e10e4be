#pragma once
// What every view-control PDU class is built from: the two ways a PDU comes to life,
// marking texts, the labelled dump and the one-line text forms of a body described as a
// table of fields, and the counted entity lists of the group and modeless bodies.
// Internal to the library.
#include <cstddef>
#include <string>

#include "dtString.h"
#include "vistrelControlPdu.h"

namespace vcpdu {

/// Sizes a PDU being built for sending to its class's whole length and sets its command.
void build(DtVistrelControlPdu& pdu, int length, DtViewerCommand command,
           DtBufferPlaceHolder* holder);
/// Takes received bytes as the PDU's own. Neither the command nor the length is checked:
/// the creation functions chose the class by the command already in the bytes.
void wrap(DtVistrelControlPdu& pdu, const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
          DtPduFactory* factory);

/// Marking texts are 64-byte character fields at the end of a body.
constexpr size_t kMarkingWidth = 64;
/// The marking text at `offset`, or the empty text unless the PDU has exactly
/// `fullLength` bytes: senders that leave the trailing marking texts off send shorter
/// PDUs, and what lies behind their end is not a marking.
DtString readMarking(const DtBaseMsg& pdu, size_t offset, int fullLength);
/// Copies at most 64 bytes; a shorter text is NUL-padded, a full one has no terminator.
void writeMarking(DtBaseMsg& pdu, size_t offset, const DtString& text);

// ------------------------------------------------------------------ bodies as tables

enum class Kind {
  Designator,  // 64-byte entity identifier
  Marking,     // 64-byte marking text of the designator with the same rank
  Float,       // one single-precision number
  Vector32,    // three singles; the text form reads them as doubles
  Angles,      // heading, pitch, roll as singles; the text form reads them as singles
  Vector64     // three doubles
};

struct Field {
  Kind kind;
  size_t offset;
  const char* label;  // of the dump line
};

/// A body as its fields in wire order, with the PDU length at which its marking texts
/// are present.
struct Body {
  int length;
  const Field* fields;
  size_t count;
};

template <size_t N>
constexpr Body body(int length, const Field (&fields)[N]) {
  return Body{length, fields, N};
}

/// One dump line per field: each identifier followed by its marking text, then the
/// numbers in wire order (singles as numbers, triples in the vector text form).
void dump(const DtBaseMsg& pdu, const Body& body);

/// The one-line text form: identifiers, numbers, marking texts, in wire order within
/// each group. The fields are separated by blanks, or by commas when an identifier or a
/// marking text holds a blank of its own. Numbers have six decimals.
std::string text(const DtBaseMsg& pdu, const Body& body);

/// Reads the text form back and sets every field, the marking texts included, so a text
/// without them clears them. A text with a comma is the comma form: there identifiers
/// and marking texts may hold blanks. A trailing field that passes the number test is a
/// number the sender wrote, not a marking text. What cannot be read is set to zero.
void setFromText(DtBaseMsg& pdu, const Body& body, const char* text);

// ------------------------------------------------------------------ entity lists

/// The two counted lists of 64-byte entity identifiers that close the group and modeless
/// bodies: the entities to remove, then the entities to add, right after the fixed part.
/// A stored count of -1 (a sender's "replace the whole group") holds no entries; counts
/// come from the wire, so nothing here trusts them further than the PDU's own bytes.
struct EntityLists {
  int fixedLength;
  size_t removeCountOffset;
  size_t addCountOffset;

  int removeCount(const DtBaseMsg& pdu) const;
  int addCount(const DtBaseMsg& pdu) const;
  /// Grows the remove list at its front (existing entries end up last) or cuts its last
  /// entries; the add entries move along. Stores `count` as given.
  void setRemoveCount(DtBaseMsg& pdu, int count) const;
  /// Grows or cuts the add list at its end. Stores `count` as given.
  void setAddCount(DtBaseMsg& pdu, int count) const;

  /// Entries outside the lists read as the empty text; writes to them are dropped.
  DtString toRemove(const DtBaseMsg& pdu, int index) const;
  void setToRemove(DtBaseMsg& pdu, int index, const DtString& id) const;
  DtString toAdd(const DtBaseMsg& pdu, int index) const;
  void setToAdd(DtBaseMsg& pdu, int index, const DtString& id) const;

  /// How many entries of each list lie inside the PDU's length.
  int removePresent(const DtBaseMsg& pdu) const;
  int addPresent(const DtBaseMsg& pdu) const;

  /// "NumToRemove:" with one unlabelled line per entry, then "NumToAdd:" likewise.
  void dump(const DtBaseMsg& pdu) const;
};

}  // namespace vcpdu
