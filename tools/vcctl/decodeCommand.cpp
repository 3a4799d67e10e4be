// "vcctl decode": reads a PDU the way a viewer would and prints it, without joining any
// federation. For PDUs copied out of a log, a capture or 'vcctl --dry-run'.
#include <cxxabi.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <typeinfo>
#include <vector>

#include "commands.h"
#include "link.h"
#include "output.h"
#include "values.h"

namespace vcctl {

using DtCmdLine::Type;

namespace {

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// Hex digits with any white space between them; false when anything else is there or
// the digits do not pair up.
bool fromHex(const std::string& text, std::vector<unsigned char>& bytes, std::string& why) {
  std::string digits;
  for (char c : text) {
    if (std::isspace(static_cast<unsigned char>(c))) continue;
    if (hexDigit(c) < 0) {
      why = std::string("'") + c + "' is not a hexadecimal digit";
      return false;
    }
    digits += c;
  }
  if (digits.size() % 2 != 0) {
    why = "an odd number of hexadecimal digits (" + std::to_string(digits.size()) + ")";
    return false;
  }
  for (size_t i = 0; i < digits.size(); i += 2)
    bytes.push_back(static_cast<unsigned char>(hexDigit(digits[i]) * 16 + hexDigit(digits[i + 1])));
  return true;
}

// No control PDU is longer than 65535 bytes; its hex dump, generously spaced, stays well
// below this. Reading stops here, so /dev/zero or a huge file is refused, not swallowed.
constexpr size_t kMaxInput = 1 << 20;

// False with `why` when the file cannot be read or is longer than any PDU or dump.
bool readFile(const std::string& path, std::string& content, std::string& why) {
  int fd = path == "-" ? 0 : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    why = std::strerror(errno);
    return false;
  }
  struct stat info {};
  if (::fstat(fd, &info) == 0 && S_ISDIR(info.st_mode)) {
    why = "it is a directory";
    if (fd != 0) ::close(fd);
    return false;
  }
  char buffer[65536];
  bool ok = true;
  for (;;) {
    ssize_t n = ::read(fd, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      why = std::strerror(errno);
      ok = false;
      break;
    }
    if (n == 0) break;
    content.append(buffer, static_cast<size_t>(n));
    if (content.size() > kMaxInput) {
      why = "more than " + std::to_string(kMaxInput) +
            " bytes, far longer than any control PDU (at most 65535 bytes) or its hex dump";
      ok = false;
      break;
    }
  }
  if (fd != 0) ::close(fd);
  return ok;
}

// The library class that read the bytes: with --v0, version-0 draw-control bytes are
// read by the version-0 classes.
std::string className(const DtVistrelControlPdu& pdu) {
  int status = 0;
  char* name = abi::__cxa_demangle(typeid(pdu).name(), nullptr, nullptr, &status);
  std::string result = status == 0 && name ? name : typeid(pdu).name();
  std::free(name);
  return result;
}

int decode(const Args& a, Link&) {
  bool fromFile = a.has("file");
  if (fromFile && a.count("hex") > 0)
    a.fail("give the PDU as hexadecimal or with --file, not both");
  if (!fromFile && a.count("hex") == 0)
    a.fail("give the PDU's bytes as hexadecimal or with --file");
  std::vector<unsigned char> bytes;
  std::string why;
  if (fromFile) {
    std::string content;
    if (!readFile(a.text("file"), content, why)) {
      complain("cannot read %s: %s", a.text("file").c_str(), why.c_str());
      return 1;
    }
    // A control PDU's third byte is 202, which is not text: a file that is all hex
    // digits and blanks is a hex dump, not the bytes themselves.
    std::vector<unsigned char> parsed;
    std::string ignored;
    if (!content.empty() && fromHex(content, parsed, ignored))
      bytes = parsed;
    else
      bytes.assign(content.begin(), content.end());
  } else {
    std::string text;
    for (size_t i = 0; i < a.count("hex"); ++i) text += a.text("hex", i) + " ";
    if (!fromHex(text, bytes, why)) a.fail("argument <hex>: " + why);
  }
  if (bytes.size() < 3 || bytes[2] != DtVistrelControlPdu::kPduKind) {
    if (bytes.size() < 3)
      complain("not a control PDU: %zu bytes, too short to say what it is", bytes.size());
    else
      complain("not a control PDU: its PDU kind (byte 2) is %d, control PDUs have %d", bytes[2],
               DtVistrelControlPdu::kPduKind);
    return 1;
  }
  std::unique_ptr<DtVistrelControlPdu> pdu(
      DtVistrelControlPdu::createFromBytes(bytes.data(), bytes.size(), !a.flag("v0")));
  if (!pdu) {
    complain("the library could not read these %zu bytes as a control PDU", bytes.size());
    return 1;
  }
  size_t claimed = bytes.size() >= 12 ? (static_cast<size_t>(bytes[8]) << 8 | bytes[9]) : 0;
  if (claimed > bytes.size())
    complain("note: the header claims %zu bytes, %zu given: the rest read as zero", claimed,
             bytes.size());
  else if (claimed < bytes.size())
    complain("note: the header claims %zu bytes, %zu given: the last %zu are not read", claimed,
             bytes.size(), bytes.size() - claimed);
  std::string layout;
  if (auto* draw = dynamic_cast<const DtVistrelDrawControlPdu*>(pdu.get()))
    layout = ", layout version " + std::to_string(draw->paramVersion());
  out("%s, %d bytes%s, read as %s\n", describe(*pdu).c_str(), pdu->length(), layout.c_str(),
      className(*pdu).c_str());
  pdu->printData();
  return 0;
}

}  // namespace

void declareDecodeCommand(Command& root, Registry& registry) {
  Command& c = registry.add(
      root, "decode", "print a PDU given as hexadecimal or as a file, without joining", &decode);
  c.arguments("hex", Type::Text, "the PDU's bytes in hexadecimal; blanks between them are allowed");
  c.option("file", Type::Text,
           "read the PDU from this file instead: its bytes, or a hex dump ('-' reads stdin)")
      .placeholder("FILE");
  c.option("v0", Type::Flag,
           "read draw-control bytes by their layout version, as version-0 senders wrote them");
  c.details("Example: vcctl --dry-run orbit 1:1:1 | sed -n 's/^hex //p' | vcctl decode --file -");
}

}  // namespace vcctl
