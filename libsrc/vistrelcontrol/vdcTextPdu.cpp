#include "vdcTextPdu.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "dtOutput.h"
#include "vdcLayout.h"
#include "vdcTextForm.h"

namespace {
struct TextLayout {
  size_t length;
  size_t text;
};
// Version 0 moved the length but not the text.
constexpr vdclayout::Versions<TextLayout> kText = {{384, DtVdcTextPduBase::kTextOffset},
                                                   {376, DtVdcTextPduBase::kTextOffset}};

const TextLayout& layout(const DtVdcTextPduBase& pdu) {
  return vdclayout::of(kText, pdu);
}
}  // namespace

DtVdcTextPduBase::DtVdcTextPduBase() = default;
DtVdcTextPduBase::~DtVdcTextPduBase() = default;

void DtVdcTextPduBase::setText(DtString text) {
  const TextLayout& l = layout(*this);
  setCountedText(l.length, l.text, text);
}

DtString DtVdcTextPduBase::text() const {
  const TextLayout& l = layout(*this);
  return countedText(l.length, l.text);
}

void DtVdcTextPduBase::printData() const {
  DtVdcAttachablePdu::printData();
  DtDumpString("Text:", text());
}

const char* DtVdcTextPduBase::string() const {
  std::string base = DtVdcAttachablePdu::string();
  DtString shown = text();
  return formatText("%s %s", base.c_str(), shown.c_str());
}

void DtVdcTextPduBase::setFromString(const char* text) {
  const char* line = text ? text : "";
  DtVdcAttachablePdu::setFromString(line);
  vdctext::Word word;
  std::sscanf(vdctext::atBlankFromEnd(line, 1), VDC_WORD, word.text);
  setText(word.text);
}

DtVdcTextPdu::DtVdcTextPdu(DtBufferPlaceHolder* holder) {
  if (initFresh(kLength, holder, DtVdcText, 1)) setRelativeLocations(50);
}

DtVdcTextPdu::DtVdcTextPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                           DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcText);
}

DtVdcTextPdu::~DtVdcTextPdu() = default;

DtVdcTextPduV0::DtVdcTextPduV0(DtBufferPlaceHolder* holder) {
  if (initFresh(kLength, holder, DtVdcText, 0)) setRelativeLocations(50);
}

DtVdcTextPduV0::DtVdcTextPduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                               DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcText);
}

DtVdcTextPduV0::~DtVdcTextPduV0() = default;
