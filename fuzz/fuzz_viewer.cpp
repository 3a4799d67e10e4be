// Received bytes -> the viewer stand-in -> what its live page and SVG file get. The input
// is a run of PDUs, each behind a two-byte length (its top bit picks the version-0
// layout); the viewer applies each one, then draws its whole state. Whatever the network
// sent, the JSON must stay one line of valid UTF-8 (an event stream line ends at the
// first line break, and the page parses it), and every number a JSON number.
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "fuzzSupport.h"
#include "textFormat.h"
#include "viewer.h"
#include "vistrelControl.h"

namespace {

void check(const std::string& json) {
  if (json.empty() || json.front() != '{' || json.back() != '}') std::abort();
  const auto* s = reinterpret_cast<const unsigned char*>(json.data());
  for (size_t i = 0; i < json.size();) {
    unsigned int c = 0;
    size_t n = vcviewer::utf8Sequence(s + i, json.size() - i, c);
    if (n == 0 || c < 0x20) std::abort();
    i += n;
  }
  // Not-a-number and infinity are no JSON: outside strings, no value may start so.
  bool inString = false;
  for (size_t i = 0; i < json.size(); ++i) {
    char c = json[i];
    if (inString) {
      if (c == '\\')
        ++i;
      else if (c == '"')
        inString = false;
    } else if (c == '"') {
      inString = true;
    } else if (json.compare(i, 3, "nan") == 0 || json.compare(i, 3, "inf") == 0) {
      std::abort();
    }
  }
  if (inString) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzsupport::silenceOutput();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vcviewer::Viewer viewer(
      "viewer-1", "vcviewer-viewer-1",
      [](const DtVistrelControlPdu& answer) {
        fuzzsupport::useBytes(answer.packet(), static_cast<size_t>(answer.length()));
      },
      [](const std::string& line) { fuzzsupport::use(line.c_str()); });
  viewer.setVerbose(true);
  while (size >= 2) {
    const bool current = (data[0] & 0x80) == 0;
    size_t length = (static_cast<size_t>(data[0] & 0x7F) << 8) | data[1];
    data += 2;
    size -= 2;
    if (length > size) length = size;
    // A copy, as the receiving side makes one: the PDU's header is read in place and
    // wants the alignment of a buffer of its own.
    const std::vector<uint8_t> bytes(data, data + length);
    std::unique_ptr<DtVistrelControlPdu> pdu(
        DtVistrelControlPdu::createFromBytes(bytes.data(), length, current));
    if (pdu) viewer.receive(*pdu);
    data += length;
    size -= length;
  }
  check(viewer.json());
  return 0;
}
