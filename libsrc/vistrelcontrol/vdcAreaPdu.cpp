#include "vdcAreaPdu.h"

#include <cstdio>
#include <string>

#include "dtOutput.h"
#include "vdcLayout.h"
#include "vdcTextForm.h"

namespace {
struct AreaLayout {
  size_t points;
};
constexpr vdclayout::Versions<AreaLayout> kArea = {{412}, {404}};

const AreaLayout& layout(const DtVdcAreaPduBase& pdu) {
  return vdclayout::of(kArea, pdu);
}

// Fixed in both layouts (see the class comment).
constexpr size_t kTextureFilenameOffset = 796;
constexpr size_t kTextureDirectoryOffset = 1052;
constexpr size_t kNumPointsOffset = 1308;
constexpr size_t kNumTilesOffset = 1309;

constexpr int kBlanksBeforeFields = 50;

// Numbers of the points text: the shortest form, so the whole line fits the text area.
void appendNumber(std::string& text, double value) {
  char number[64];
  std::snprintf(number, sizeof number, "%g", value);
  text += ' ';
  text += number;
}
}  // namespace

DtVdcAreaPduBase::DtVdcAreaPduBase() = default;
DtVdcAreaPduBase::~DtVdcAreaPduBase() = default;

void DtVdcAreaPduBase::setNumPoints(int count) {
  writeU8(kNumPointsOffset, static_cast<unsigned int>(count) & 0xFFu);
}

int DtVdcAreaPduBase::numPoints() const {
  return static_cast<int>(readU8(kNumPointsOffset));
}

void DtVdcAreaPduBase::setPoint(int i, const DtVector64& point) {
  writePoint(layout(*this).points, kMaxPoints, i, point);
}

DtVector64 DtVdcAreaPduBase::point(int i) const {
  return readPoint(layout(*this).points, kMaxPoints, i);
}

void DtVdcAreaPduBase::setTextureDirectory(const DtString& directory) {
  writeChars(kTextureDirectoryOffset, kTextureNameSize, directory.c_str());
}

DtString DtVdcAreaPduBase::textureDirectory() const {
  return readChars(kTextureDirectoryOffset, kTextureNameSize);
}

void DtVdcAreaPduBase::setTextureFilename(const DtString& filename) {
  writeChars(kTextureFilenameOffset, kTextureNameSize, filename.c_str());
}

DtString DtVdcAreaPduBase::textureFilename() const {
  return readChars(kTextureFilenameOffset, kTextureNameSize);
}

void DtVdcAreaPduBase::setNumTextureTiles(int tiles) {
  writeU8(kNumTilesOffset, static_cast<unsigned int>(tiles) & 0xFFu);
}

int DtVdcAreaPduBase::numTextureTiles() const {
  return static_cast<int>(readU8(kNumTilesOffset));
}

void DtVdcAreaPduBase::printData() const {
  DtVdcPolyObjectPduBase::printData();
  int count = numPoints();
  for (int i = 0; i < count; ++i) {
    DtDumpInteger("Point", i + 1);
    DtDumpString("location", point(i).string());
  }
  DtDumpString("texture filename", textureFilename());
  DtDumpString("texture directory", textureDirectory());
  DtDumpInteger("tiling factor", numTextureTiles());
}

const char* DtVdcAreaPduBase::string() const {
  std::string base = DtVdcPolyObjectPduBase::string();
  // All 16 points travel whatever the count, so the line has a fixed shape.
  std::string points = std::to_string(numPoints());
  for (int i = 0; i < kMaxPoints; ++i) {
    DtVector64 p = point(i);
    for (int k = 0; k < 3; ++k) appendNumber(points, p[k]);
  }
  DtString directory = textureDirectory();
  DtString filename = textureFilename();
  return formatText("%s %s %s %s %d", base.c_str(), points.c_str(), directory.c_str(),
                    filename.c_str(), numTextureTiles());
}

void DtVdcAreaPduBase::setFromString(const char* text) {
  const char* line = text ? text : "";
  DtVdcPolyObjectPduBase::setFromString(line);
  // Everything is scanned into locals first and applied only afterwards, so a short or
  // malformed line cannot leave the PDU half read.
  int count = 0, tiles = 0;
  float v[kMaxPoints * 3] = {};
  char directory[kTextureNameSize] = {0};
  char filename[kTextureNameSize] = {0};
  const char* p = vdctext::afterBlanks(line, kBlanksBeforeFields);
  int used = 0;
  bool more = std::sscanf(p, "%d%n", &count, &used) == 1;
  for (int i = 0; more && i < kMaxPoints * 3; ++i) {
    p += used;
    more = std::sscanf(p, "%f%n", &v[i], &used) == 1;
  }
  if (more) std::sscanf(p + used, "%255s %255s %d", directory, filename, &tiles);
  setNumPoints(count);
  setTextureDirectory(directory);
  setTextureFilename(filename);
  setNumTextureTiles(tiles);
  for (int i = 0; i < kMaxPoints; ++i)
    setPoint(i, DtVector64(v[3 * i], v[3 * i + 1], v[3 * i + 2]));
}

DtVdcAreaPdu::DtVdcAreaPdu(DtBufferPlaceHolder* holder) {
  if (initFresh(kLength, holder, DtVdcArea, 1)) {
    setRelativeLocations(50);
    setNumPoints(0);
  }
}

DtVdcAreaPdu::DtVdcAreaPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                           DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcArea);
}

DtVdcAreaPdu::~DtVdcAreaPdu() = default;

DtVdcAreaPduV0::DtVdcAreaPduV0(DtBufferPlaceHolder* holder) {
  if (initFresh(kLength, holder, DtVdcArea, 0)) setRelativeLocations(50);
}

DtVdcAreaPduV0::DtVdcAreaPduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                               DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcArea);
}

DtVdcAreaPduV0::~DtVdcAreaPduV0() = default;
