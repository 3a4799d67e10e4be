#pragma once
#include "vdcPolyObjectPdu.h"

/// DtVdcAreaPduBase is a textured polygon (types 2553 and 2555): a poly-object with up
/// to 16 points of three doubles from byte 412 (version 0: 404), a texture file name
/// (796) and directory (1052) of 256 characters each, the point count (1308) and the
/// number of texture tiles (1309). The texture fields and counts sit at those offsets in
/// both layouts, so in a version-0 PDU (796 bytes) they lie beyond its length and travel
/// nowhere: version-0 viewers had no textures.
class DT_EXPORT DtVdcAreaPduBase : public DtVdcPolyObjectPduBase {
 public:
  static constexpr int kMaxPoints = 16;
  static constexpr size_t kTextureNameSize = 256;

  ~DtVdcAreaPduBase() override;

  /// Stores the low 8 bits.
  virtual void setNumPoints(int count);
  virtual int numPoints() const;
  /// Points 0 to 15; others are ignored and read as the zero vector.
  virtual void setPoint(int i, const DtVector64& point);
  virtual DtVector64 point(int i) const;
  /// At most 256 characters, zero-filled; a 256-character name has no terminator.
  virtual void setTextureDirectory(const DtString& directory);
  virtual DtString textureDirectory() const;
  virtual void setTextureFilename(const DtString& filename);
  virtual DtString textureFilename() const;
  /// Stores the low 8 bits.
  virtual void setNumTextureTiles(int tiles);
  virtual int numTextureTiles() const;

  void printData() const override;
  /// The poly-object text, the point count and all 16 points, the texture directory and
  /// file name, and the tile count.
  const char* string() const override;
  /// Applies the poly-object reader, then reads the area's fields from behind the 50th
  /// blank.
  void setFromString(const char* text) override;

 protected:
  DtVdcAreaPduBase();
};

/// DtVdcAreaPdu (command 2553, 1312 bytes): relative locations 50 and 50, no points.
class DT_EXPORT DtVdcAreaPdu : public DtVdcAreaPduBase {
 public:
  static constexpr int kLength = 1312;

  explicit DtVdcAreaPdu(DtBufferPlaceHolder* holder = nullptr);
  DtVdcAreaPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
               DtPduFactory* factory);
  ~DtVdcAreaPdu() override;
};

/// DtVdcAreaPduV0 (command 2553, 796 bytes, version 0): relative location 50.
class DT_EXPORT DtVdcAreaPduV0 : public DtVdcAreaPduBase {
 public:
  static constexpr int kLength = 796;

  explicit DtVdcAreaPduV0(DtBufferPlaceHolder* holder = nullptr);
  DtVdcAreaPduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                 DtPduFactory* factory);
  ~DtVdcAreaPduV0() override;
};
