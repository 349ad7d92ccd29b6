// How things look on the page: colour, pen width and linetype, resolved by layer, by block, by entity.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "cm/color.h"
#include "db/objectid.h"
#include "host/plot/linemarks.h"

class GcDbDatabase;

namespace gc::plot {

// What an entity says of itself; null ids mean "by layer".
struct Traits {
  GcCmEntityColor color;
  GcDbObjectId layer;
  GcDbObjectId linetype;
  double linetypeScale = 1;
  int lineWeight = -1;
};

// What is drawn.
struct Look {
  uint32_t rgb = 0;
  double widthMm = 0.25;
  GcDbObjectId linetype;
  double linetypeScale = 1;
  GcDbObjectId layer;
};

class Looks {
 public:
  // What the looks are for: layers that do not plot are seen on a screen.
  enum class For : uint8_t { Plot, Screen };
  // Colour 7 is black on a light background and white on a dark one.
  Looks(GcDbDatabase& database, uint32_t backgroundRgb, For purpose = For::Plot);

  // The look of things that say "by block" outside of any block.
  [[nodiscard]] const Look& outermost() const { return m_outermost; }
  // The drawing's own record for one of a drawing it refers to; that one itself where there is none.
  [[nodiscard]] GcDbObjectId ownRecord(GcDbObjectId record);
  // What the traits mean inside of something that looks like `container`.
  [[nodiscard]] Look resolve(const Traits& traits, const Look& container);
  [[nodiscard]] uint32_t rgbOf(const GcCmEntityColor& color, GcDbObjectId layer, const Look& container);

  // A frozen layer hides all on it, the contents of inserted blocks included; a layer that is off, only what lies on
  // it itself; on plots a layer that does not plot likewise.
  [[nodiscard]] bool isFrozen(GcDbObjectId layer);
  [[nodiscard]] bool isShown(GcDbObjectId layer);
  // Layers frozen on top, until the next call: those of a viewport.
  void freezeAlso(const std::vector<GcDbObjectId>& layers);

  // The elements of a linetype, drawing units: dashes positive, gaps negative, dots zero.
  const std::vector<double>& linetypeElements(GcDbObjectId linetype);
  // The letters in its pattern.
  const std::vector<LineMark>& linetypeMarks(GcDbObjectId linetype);

 private:
  struct Layer {
    GcCmEntityColor color;
    GcDbObjectId linetype;
    int lineWeight = -3;
    bool frozen = false;
    bool shown = true;
  };
  struct IdHash {
    std::size_t operator()(GcDbObjectId id) const { return std::hash<const void*>()(id.stub()); }
  };
  const Layer& layer(GcDbObjectId id);
  [[nodiscard]] uint32_t rgbOfIndex(int index) const;

  GcDbDatabase& m_database;
  For m_purpose;
  Look m_outermost;
  std::unordered_map<GcDbObjectId, Layer, IdHash> m_layers;
  std::unordered_map<GcDbObjectId, std::vector<double>, IdHash> m_linetypes;
  std::unordered_map<GcDbObjectId, std::vector<LineMark>, IdHash> m_marks;
  std::unordered_set<GcDbObjectId, IdHash> m_alsoFrozen;
  std::unordered_map<GcDbObjectId, GcDbObjectId, IdHash> m_ownRecords;  // of records of other drawings
};

}  // namespace gc::plot
