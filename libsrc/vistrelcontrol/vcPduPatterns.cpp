#include "vcPduPatterns.h"

#include <cctype>
#include <cstdio>
#include <vector>

#include "dtOutput.h"

namespace vcpdu {

void build(DtVistrelControlPdu& pdu, int length, DtViewerCommand command,
           DtBufferPlaceHolder* holder) {
  pdu.initPdu(length, holder);
  pdu.setViewerCommand(command);
}

void wrap(DtVistrelControlPdu& pdu, const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
          DtPduFactory* factory) {
  pdu.initPdu(bytes, holder, factory);
}

DtString readMarking(const DtBaseMsg& pdu, size_t offset, int fullLength) {
  if (pdu.length() != fullLength) return DtString();
  return pdu.readChars(offset, kMarkingWidth);
}

void writeMarking(DtBaseMsg& pdu, size_t offset, const DtString& text) {
  pdu.writeChars(offset, kMarkingWidth, text.c_str());
}

// ------------------------------------------------------------------ bodies as tables

namespace {

constexpr size_t kTripleSize = 3;

const Field* nthOfKind(const Body& b, Kind kind, size_t rank) {
  for (size_t i = 0; i < b.count; ++i) {
    if (b.fields[i].kind != kind) continue;
    if (rank == 0) return &b.fields[i];
    --rank;
  }
  return nullptr;
}

size_t countOfKind(const Body& b, Kind kind) {
  size_t n = 0;
  for (size_t i = 0; i < b.count; ++i) n += b.fields[i].kind == kind ? 1 : 0;
  return n;
}

bool isNumeric(Kind kind) {
  return kind != Kind::Designator && kind != Kind::Marking;
}

size_t numbersIn(Kind kind) {
  return kind == Kind::Float ? 1 : kTripleSize;
}

// Angles and single floats are read from text at single precision, the other triples at
// double precision (offsets are narrowed later, by the field itself).
bool readsAsSingle(Kind kind) {
  return kind == Kind::Float || kind == Kind::Angles;
}

std::string number(double value) {
  char digits[512];
  std::snprintf(digits, sizeof digits, "%f", value);
  return digits;
}

// Reads the numbers of a field from the PDU, widened to double.
void appendNumbers(const DtBaseMsg& pdu, const Field& f, std::vector<double>& out) {
  switch (f.kind) {
    case Kind::Float:
      out.push_back(pdu.readFloat32(f.offset));
      break;
    case Kind::Vector32: {
      DtVector64 v = pdu.readVector32(f.offset);
      out.insert(out.end(), {v[0], v[1], v[2]});
      break;
    }
    case Kind::Angles: {
      DtTaitBryan a = pdu.readEulerAngles(f.offset);
      out.insert(out.end(), {a.psi(), a.theta(), a.phi()});
      break;
    }
    case Kind::Vector64: {
      DtVector64 v = pdu.readVector64(f.offset);
      out.insert(out.end(), {v[0], v[1], v[2]});
      break;
    }
    case Kind::Designator:
    case Kind::Marking:
      break;
  }
}

// Writes a field's numbers, taken from `values` at `next`, which moves past them.
void writeNumbers(DtBaseMsg& pdu, const Field& f, const std::vector<double>& values, size_t& next) {
  const double* n = &values[next];
  next += numbersIn(f.kind);
  switch (f.kind) {
    case Kind::Float:
      pdu.writeFloat32(f.offset, static_cast<float>(n[0]));
      break;
    case Kind::Vector32:
      pdu.writeVector32(f.offset, DtVector64(n[0], n[1], n[2]));
      break;
    case Kind::Angles:
      pdu.writeEulerAngles(f.offset, DtTaitBryan(n[0], n[1], n[2]));
      break;
    case Kind::Vector64:
      pdu.writeVector64(f.offset, DtVector64(n[0], n[1], n[2]));
      break;
    case Kind::Designator:
    case Kind::Marking:
      break;
  }
}

// Splits at every separator and keeps empty pieces, so that a text ending in a separator
// ends in an empty piece: that is how an empty marking text looks.
std::vector<std::string> split(const std::string& t, char separator) {
  std::vector<std::string> pieces(1);
  for (char c : t) {
    if (c == separator)
      pieces.emplace_back();
    else
      pieces.back() += c;
  }
  return pieces;
}

bool isSpace(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0;
}

// Reads one white-space delimited word, as a %s conversion would; false when none is left.
bool readWord(const char*& p, std::string& word) {
  while (*p && isSpace(*p)) ++p;
  const char* start = p;
  while (*p && !isSpace(*p)) ++p;
  word.assign(start, p);
  return p != start;
}

// Reads the numbers of the text form in order, each with the precision of its field, as
// a scan with the separator between the conversions would: the first number that cannot
// be read ends the scan and leaves it and all after it at zero.
class NumberScan {
 public:
  NumberScan(const char* at, char separator) : p_(at), separator_(separator) {}

  void read(double& value, bool single) {
    if (failed_) return;
    // A blank in a scan format matches any white space, which the conversion skips
    // anyway; a comma must stand right behind the previous number.
    if (started_ && separator_ != ' ') {
      if (*p_ != separator_) {
        failed_ = true;
        return;
      }
      ++p_;
    }
    started_ = true;
    int used = 0;
    if (single) {
      float f = 0.0f;
      failed_ = std::sscanf(p_, "%f%n", &f, &used) != 1;
      if (!failed_) value = f;
    } else {
      double d = 0.0;
      failed_ = std::sscanf(p_, "%lf%n", &d, &used) != 1;
      if (!failed_) value = d;
    }
    if (!failed_) p_ += used;
  }

 private:
  const char* p_;
  char separator_;
  bool started_ = false;
  bool failed_ = false;
};

}  // namespace

void dump(const DtBaseMsg& pdu, const Body& b) {
  // Each identifier is followed by the marking text of the same entity.
  size_t rank = 0;
  while (const Field* id = nthOfKind(b, Kind::Designator, rank)) {
    DtDumpString(id->label, pdu.readDesignator(id->offset).c_str());
    if (const Field* marking = nthOfKind(b, Kind::Marking, rank))
      DtDumpString(marking->label, readMarking(pdu, marking->offset, b.length).c_str());
    ++rank;
  }
  for (size_t i = 0; i < b.count; ++i) {
    const Field& f = b.fields[i];
    switch (f.kind) {
      case Kind::Float:
        DtDumpFloat(f.label, pdu.readFloat32(f.offset));
        break;
      case Kind::Vector32:
        DtDumpString(f.label, pdu.readVector32(f.offset).string().c_str());
        break;
      case Kind::Angles:
        DtDumpString(f.label, pdu.readEulerAngles(f.offset).string().c_str());
        break;
      case Kind::Vector64:
        DtDumpString(f.label, pdu.readVector64(f.offset).string().c_str());
        break;
      case Kind::Designator:
      case Kind::Marking:
        break;
    }
  }
}

std::string text(const DtBaseMsg& pdu, const Body& b) {
  std::vector<std::string> ids, markings;
  std::vector<double> numbers;
  bool blankInside = false;
  for (size_t i = 0; i < b.count; ++i) {
    const Field& f = b.fields[i];
    if (f.kind == Kind::Designator || f.kind == Kind::Marking) {
      DtString s = f.kind == Kind::Designator ? pdu.readDesignator(f.offset)
                                              : readMarking(pdu, f.offset, b.length);
      blankInside = blankInside || s.contains(' ');
      (f.kind == Kind::Designator ? ids : markings).push_back(s.stdString());
    } else {
      appendNumbers(pdu, f, numbers);
    }
  }
  // A blank inside a name would split it on reading; commas keep it whole.
  const char separator = blankInside ? ',' : ' ';
  std::string out;
  bool first = true;
  auto add = [&](const std::string& piece) {
    if (!first) out += separator;
    first = false;
    out += piece;
  };
  for (const std::string& id : ids) add(id);
  for (double n : numbers) add(number(n));
  for (const std::string& m : markings) add(m);
  return out;
}

void setFromText(DtBaseMsg& pdu, const Body& b, const char* raw) {
  const std::string t = raw ? raw : "";
  const size_t idCount = countOfKind(b, Kind::Designator);
  const size_t markingCount = countOfKind(b, Kind::Marking);
  std::vector<std::string> ids(idCount), markings(markingCount);
  std::vector<double> numbers;
  for (size_t i = 0; i < b.count; ++i)
    if (isNumeric(b.fields[i].kind)) numbers.resize(numbers.size() + numbersIn(b.fields[i].kind));

  const bool commaForm = t.find(',') != std::string::npos;
  const char separator = commaForm ? ',' : ' ';
  const std::vector<std::string> pieces = split(t, separator);

  // The marking texts are the last pieces, behind the identifiers; one that is a number
  // is the sender's last number, written without a marking after it.
  for (size_t back = 1; back <= markingCount && pieces.size() >= back + idCount; ++back) {
    const std::string& piece = pieces[pieces.size() - back];
    if (!DtVistrelControlPdu::isNumber(piece.c_str())) markings[markingCount - back] = piece;
  }

  const char* rest = t.c_str();
  bool idsRead = true;
  if (commaForm) {
    size_t at = 0;
    for (size_t i = 0; i < idCount; ++i) {
      if (i < pieces.size()) ids[i] = pieces[i];
      size_t comma = t.find(',', at);
      at = comma == std::string::npos ? t.size() : comma + 1;
    }
    rest += at;
  } else {
    for (size_t i = 0; i < idCount && idsRead; ++i) idsRead = readWord(rest, ids[i]);
  }

  if (idsRead) {
    NumberScan scan(rest, separator);
    size_t n = 0;
    for (size_t i = 0; i < b.count; ++i) {
      const Field& f = b.fields[i];
      if (!isNumeric(f.kind)) continue;
      for (size_t k = 0; k < numbersIn(f.kind); ++k) scan.read(numbers[n++], readsAsSingle(f.kind));
    }
  }

  size_t nextNumber = 0, nextId = 0, nextMarking = 0;
  for (size_t i = 0; i < b.count; ++i) {
    const Field& f = b.fields[i];
    if (f.kind == Kind::Designator)
      pdu.writeDesignator(f.offset, ids[nextId++]);
    else if (f.kind == Kind::Marking)
      writeMarking(pdu, f.offset, markings[nextMarking++]);
    else
      writeNumbers(pdu, f, numbers, nextNumber);
  }
}

// ------------------------------------------------------------------ entity lists

namespace {

constexpr long long kSlotSize = 64;

// A length or byte count for the buffer operations, which take no more than a header can
// state.
int bounded(long long n) {
  if (n < 0) return 0;
  return n > DtBaseMsg::kMaxLength ? DtBaseMsg::kMaxLength : static_cast<int>(n);
}

// Entries a stored count stands for: -1 (and any other negative count) holds none.
long long entries(int count) {
  return count < 0 ? 0 : count;
}

}  // namespace

int EntityLists::removeCount(const DtBaseMsg& pdu) const {
  return pdu.readInt32(removeCountOffset);
}

int EntityLists::addCount(const DtBaseMsg& pdu) const {
  return pdu.readInt32(addCountOffset);
}

void EntityLists::setRemoveCount(DtBaseMsg& pdu, int count) const {
  long long old = entries(removeCount(pdu));
  long long wanted = entries(count);
  // New slots go in front of the old entries, so the old entries end up last.
  if (wanted > old) pdu.insertBytes(fixedLength, bounded(kSlotSize * (wanted - old)));
  if (wanted < old)
    pdu.deleteBytes(bounded(fixedLength + kSlotSize * wanted), bounded(kSlotSize * (old - wanted)));
  pdu.writeInt32(removeCountOffset, count);
}

void EntityLists::setAddCount(DtBaseMsg& pdu, int count) const {
  long long slots = entries(removeCount(pdu)) + entries(count);
  pdu.changeSize(bounded(fixedLength + kSlotSize * slots));
  pdu.writeInt32(addCountOffset, count);
}

DtString EntityLists::toRemove(const DtBaseMsg& pdu, int index) const {
  if (index < 0 || index >= removeCount(pdu)) return DtString();
  return pdu.readDesignator(static_cast<size_t>(fixedLength + kSlotSize * index));
}

void EntityLists::setToRemove(DtBaseMsg& pdu, int index, const DtString& id) const {
  if (index < 0 || index >= removeCount(pdu)) return;
  pdu.writeDesignator(static_cast<size_t>(fixedLength + kSlotSize * index), id);
}

DtString EntityLists::toAdd(const DtBaseMsg& pdu, int index) const {
  if (index < 0 || index >= addCount(pdu)) return DtString();
  long long slot = entries(removeCount(pdu)) + index;
  return pdu.readDesignator(static_cast<size_t>(fixedLength + kSlotSize * slot));
}

void EntityLists::setToAdd(DtBaseMsg& pdu, int index, const DtString& id) const {
  if (index < 0 || index >= addCount(pdu)) return;
  long long slot = entries(removeCount(pdu)) + index;
  pdu.writeDesignator(static_cast<size_t>(fixedLength + kSlotSize * slot), id);
}

namespace {
// Slots that lie wholly inside the PDU, after the fixed part.
long long slotsInside(const DtBaseMsg& pdu, int fixedLength) {
  long long room = static_cast<long long>(pdu.length()) - fixedLength;
  return room > 0 ? room / kSlotSize : 0;
}
}  // namespace

int EntityLists::removePresent(const DtBaseMsg& pdu) const {
  long long inside = slotsInside(pdu, fixedLength);
  long long n = entries(removeCount(pdu));
  return static_cast<int>(n < inside ? n : inside);
}

int EntityLists::addPresent(const DtBaseMsg& pdu) const {
  long long inside = slotsInside(pdu, fixedLength) - entries(removeCount(pdu));
  long long n = entries(addCount(pdu));
  if (inside < 0) inside = 0;
  return static_cast<int>(n < inside ? n : inside);
}

void EntityLists::dump(const DtBaseMsg& pdu) const {
  DtDumpInteger("NumToRemove:", removeCount(pdu));
  for (int i = 0, n = removePresent(pdu); i < n; ++i) DtDumpString("", toRemove(pdu, i).c_str());
  DtDumpInteger("NumToAdd:", addCount(pdu));
  for (int i = 0, n = addPresent(pdu); i < n; ++i) DtDumpString("", toAdd(pdu, i).c_str());
}

}  // namespace vcpdu
