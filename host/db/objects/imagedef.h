// What images share: the file of pixels, who uses it, and the drawing's settings for images and wipeouts.
#pragma once

#include "db/object.h"
#include "ge/point.h"
#include "rx/gcstring.h"

struct GcDbField;

class GcDbRasterImageDef : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbRasterImageDef);
  static const GcDbField kFields[];
  static const int kFieldCount;
  [[nodiscard]] const GcString& sourceFileName() const { return m_fileName; }
  [[nodiscard]] bool isLoaded() const { return m_isLoaded; }

 private:
  GcString m_fileName;
  GcGeVector2d m_size{1, 1};       // pixels
  GcGeVector2d m_pixelSize{1, 1};  // drawing units, of one pixel
  int32_t m_version = 0;
  bool m_isLoaded = true;
  uint8_t m_units = 0;  // 0 none, 2 centimetres, 5 inches
};

// Ties a definition to one image that shows it.
class GcDbRasterImageDefReactor : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbRasterImageDefReactor);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  int32_t m_version = 2;
  GcDbObjectId m_imageId;
};

class GcDbRasterVariables : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbRasterVariables);
  static const GcDbField kFields[];
  static const int kFieldCount;
  [[nodiscard]] int frame() const { return m_frame; }

 private:
  int32_t m_version = 0;
  int16_t m_frame = 1;  // 0 none, 1 shown and plotted, 2 shown only
  int16_t m_quality = 1;
  int16_t m_units = 3;
};

class GcDbWipeoutVariables : public GcDbObject {
 public:
  GCRX_DECLARE_MEMBERS(GcDbWipeoutVariables);
  static const GcDbField kFields[];
  static const int kFieldCount;
  [[nodiscard]] int frame() const { return m_frame; }

 private:
  int16_t m_frame = 1;
};
