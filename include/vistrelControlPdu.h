#pragma once
#include <cstddef>

#include "dtExport.h"
#include "dtPdu.h"
#include "dtString.h"

/// Command numbers of control PDUs (unsigned 16 bits at byte 146). 0 to 14 are requests
/// to the viewer, the same plus 500 are the viewer's status reports, and 2510 to 2590
/// (the draw types of each draw-control family) select the draw-control classes. The
/// type is int-based so that every received number is a valid value.
enum DtViewerCommand : int {
  DtVcAbsolute = 0,
  DtVcTether = 1,
  DtVcCompass = 2,
  DtVcMimic = 3,
  DtVcOffsetMimic = 4,
  DtVcOrbit = 5,
  DtVcTrack = 6,
  DtVcTetherTrack = 7,
  DtVcMimicTrack = 8,
  DtVcGroup = 9,
  DtVcModeless = 10,
  DtVcOptions = 11,
  DtVcPivot = 12,
  DtVcMove = 13,
  DtVcRequestState = 14,
  DtVcAbsoluteStatus = 500,
  DtVcTetherStatus = 501,
  DtVcCompassStatus = 502,
  DtVcMimicStatus = 503,
  DtVcOffsetMimicStatus = 504,
  DtVcOrbitStatus = 505,
  DtVcTrackStatus = 506,
  DtVcTetherTrackStatus = 507,
  DtVcMimicTrackStatus = 508,
  DtVcGroupStatus = 509,
  DtVcModelessStatus = 510,
  DtVcPivotStatus = 512
};

/// Printable name of a viewer command ("DtVcOrbit", "DtVcOrbitStatus", the draw type's
/// name for draw-control commands), or "UnknownEnum".
DT_EXPORT const char* DtEnumString(DtViewerCommand command);

/// The raw bytes of a control PDU as they are handed to the wrapping constructors and
/// the creation functions: the 12-byte PDU header, then the rest of the PDU.
struct DtNetViewControlPdu : DtNetPduHeader {};

/// DtVistrelControlPdu is the base of every control PDU: PDU kind 202 and a 152-byte
/// header naming the addressed viewer (byte 12), the sender (byte 76) and the command
/// (byte 146); view-control bodies start with 32 bits of ignore flags at byte 152. It
/// also builds the right class from received bytes or from a command number, and prints
/// the library's banner once per process when the first control PDU is built.
class DT_EXPORT DtVistrelControlPdu : public DtPdu {
 public:
  static constexpr int kPduKind = 202;
  static constexpr int kHeaderLength = 152;
  static constexpr size_t kTextSize = 400;
  /// Where the header's 64-byte designators of the viewer and the sender start.
  static constexpr size_t kViewerIdOffset = 12;
  static constexpr size_t kSenderIdOffset = 76;

  DtVistrelControlPdu();
  DtVistrelControlPdu(const DtVistrelControlPdu& other);
  DtVistrelControlPdu& operator=(const DtVistrelControlPdu& other);
  ~DtVistrelControlPdu() override;

  /// The viewer addressed (in a status report: the viewer reporting). The reference is
  /// to a cache that senderId() shares: copy it before asking for the other.
  const DtString& viewerId() const;
  void setViewerId(const DtString& id);
  /// The controller that sent the PDU; shares its cache with viewerId().
  const DtString& senderId() const;
  void setSenderId(const DtString& id);

  DtViewerCommand viewerCommand() const;
  /// Stores the low 16 bits of the command.
  void setViewerCommand(DtViewerCommand command);

  /// The 32 flag bits at byte 152, widened as a signed number (bit 31 fills the upper
  /// bits). A set bit tells the viewer to keep its current value of that field.
  unsigned long ignoreFlags() const;
  /// Stores the low 32 bits.
  void setIgnoreFlags(unsigned long flags);

  /// True for commands 500 to 600: the viewer's reports of its state.
  bool statusCommand() const;
  /// Adds 500 to a request command, or takes 500 off any command of 500 or more.
  void setStatusCommand(bool status);

  /// The number test of the text parsers: an optional leading minus, digits and at most
  /// one point, with at least one digit.
  static bool isNumber(const char* text);

  void printData() const override;
  int internalGetPduKind() const override;

  /// Sets the body from its one-line text form; the base ignores the text.
  virtual void setFromString(const char* text);
  /// The body's one-line text form; the base's is empty. The text lives in this PDU and
  /// stays valid until the next call.
  virtual const char* string() const;

  // ------------------------------------------------------------------ creation
  /// A new PDU of the right class around received bytes, or null when byte 2 is not
  /// 202. Draw-control bodies are always read in the current layout.
  static DtVistrelControlPdu* createFromNet(const DtNetPduHeader* bytes,
                                            DtBufferPlaceHolder* holder = nullptr,
                                            DtPduFactory* factory = nullptr);
  /// As createFromNet, but draw-control PDUs follow their parameter version.
  static DtVistrelControlPdu* create(const DtNetPduHeader* bytes,
                                     DtBufferPlaceHolder* holder = nullptr,
                                     DtPduFactory* factory = nullptr);
  /// createFromNet (or create, when `current` is false) for `size` received bytes of
  /// which the header's length may claim more: what is missing reads as zero.
  static DtVistrelControlPdu* createFromBytes(const void* bytes, size_t size, bool current = true);
  static DtVistrelControlPdu* createViewControl(DtNetViewControlPdu* bytes,
                                                DtBufferPlaceHolder* holder, DtPduFactory* factory);
  static DtVistrelControlPdu* createDrawControl(DtNetViewControlPdu* bytes,
                                                DtBufferPlaceHolder* holder, DtPduFactory* factory);
  static DtVistrelControlPdu* createDrawControlCurrent(DtNetViewControlPdu* bytes,
                                                       DtBufferPlaceHolder* holder,
                                                       DtPduFactory* factory);
  static DtVistrelControlPdu* createDrawControlV0(DtNetViewControlPdu* bytes,
                                                  DtBufferPlaceHolder* holder,
                                                  DtPduFactory* factory);
  /// The parameter version of draw-control bytes: the 16 bits at byte 156 when byte 152
  /// holds the marker 0x600DF00D, otherwise 0.
  static unsigned int drawControlParamVersion(const DtNetViewControlPdu* bytes);

 protected:
  /// Writes printf-style into this PDU's 400-byte text area, cutting what does not fit,
  /// and returns the text.
  const char* formatText(const char* format, ...) const __attribute__((format(printf, 2, 3)));
  /// The text area itself, for text forms built piece by piece (kTextSize bytes).
  char* textArea() const { return text_; }

 private:
  mutable DtString idCache_;
  mutable char text_[kTextSize];
};

/// DtRequestStateVCPdu (command 14) asks the viewer to report its current mode. It is the
/// bare 152-byte header: it has no ignore flags, so callers must not touch them.
class DT_EXPORT DtRequestStateVCPdu : public DtVistrelControlPdu {
 public:
  explicit DtRequestStateVCPdu(DtBufferPlaceHolder* holder = nullptr);
  DtRequestStateVCPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                      DtPduFactory* factory);
  ~DtRequestStateVCPdu() override;
};

/// DtUnknownVistrelControlPdu holds a received control PDU whose command this library
/// does not know, so it can still be passed on and printed.
class DT_EXPORT DtUnknownVistrelControlPdu : public DtVistrelControlPdu {
 public:
  DtUnknownVistrelControlPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                             DtPduFactory* factory);
  ~DtUnknownVistrelControlPdu() override;
};

/// A new view-control PDU for commands 0 to 9 and 11 to 14, or its status form for 500 to
/// 509 and 512; null for anything else (modeless PDUs are not made by command).
DT_EXPORT DtVistrelControlPdu* DtNewViewControlPdu(DtViewerCommand command);
/// A new current-layout draw-control PDU of the given draw type, or null.
DT_EXPORT DtVistrelControlPdu* DtNewDrawControlPdu(DtViewerCommand drawType);
/// A new version-0 draw-control PDU of the given draw type, or null.
DT_EXPORT DtVistrelControlPdu* DtNewDrawControlPduV0(DtViewerCommand drawType);
/// DtNewViewControlPdu, else DtNewDrawControlPdu.
DT_EXPORT DtVistrelControlPdu* DtNewVistrelControlPdu(DtViewerCommand command);
