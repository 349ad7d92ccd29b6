// One record while it is read or written: its three streams (data, text, references) and the calls that take and put
// values. Both classes have the same calls with the same meaning, so that one packing serves both: each call is given
// the value to write and returns the value that counts (the given one when writing, the one read when reading).
#pragma once

#include "db/object.h"
#include "host/dwg/bits/bitreader.h"
#include "host/dwg/bits/bitwriter.h"
#include "host/dwg/record/context.h"

namespace gc::dwg {

class RecordIn {
 public:
  static constexpr bool kWriting = false;

  RecordIn(RecordContext& file, uint64_t handle) : context(file), own(handle) {}

  RecordContext& context;
  uint64_t own;       // handle of the record
  size_t behind = 0;  // bytes behind the record that may be touched
  BitReader data;
  BitReader texts;  // from AC1021 on; empty when the record has no texts
  BitReader handles;
  RecordLinks links;
  bool hasTexts = false;

  [[nodiscard]] int version() const { return context.version; }
  [[nodiscard]] bool failed() const { return data.failed() || texts.failed() || handles.failed(); }
  void fail() { data.fail(); }

  bool b(bool) { return data.b(); }
  unsigned bb(unsigned) { return data.bb(); }
  unsigned bit3(unsigned) { return data.bit3(); }
  int bs(int) { return data.bs(); }
  int32_t bl(int32_t) { return data.bl(); }
  uint64_t bll(uint64_t) { return data.bll(); }
  unsigned rc(unsigned) { return data.rc(); }
  unsigned rs(unsigned) { return data.rs(); }
  uint32_t rl(uint32_t) { return data.rl(); }
  uint64_t rll(uint64_t) { return data.rll(); }
  double bd(double) { return data.bd(); }
  double rd(double) { return data.rd(); }
  double dd(double, double otherwise) { return data.dd(otherwise); }
  double bt(double) { return version() >= kR2000 ? data.bt() : data.bd(); }
  GcGePoint3d bd3(const GcGePoint3d&) { return data.bd3(); }
  GcGePoint3d rd3(const GcGePoint3d&) { return data.rd3(); }
  GcGePoint2d bd2(const GcGePoint2d&) { return data.bd2(); }
  GcGePoint2d rd2(const GcGePoint2d&) { return data.rd2(); }
  GcGeVector3d be(const GcGeVector3d&);
  GcText t(GcView);
  GcCmEntityColor cmc(GcCmEntityColor);
  GcDbObjectId h(unsigned, GcDbObjectId);
  // A reference and the code it was written with.
  GcDbObjectId h(unsigned, GcDbObjectId, unsigned& code);
  // Binary data of a known size.
  GcArray<uint8_t> bytes(const GcArray<uint8_t>&, size_t size);
  // A count of elements that take at least `leastBits` each: refused when the record is too short for them.
  int count(int32_t read, unsigned leastBits = 1);
};

class RecordOut {
 public:
  static constexpr bool kWriting = true;

  RecordOut(RecordContext& file, uint64_t handle) : context(file), own(handle) {}

  RecordContext& context;
  uint64_t own;
  BitWriter data;
  BitWriter texts;
  BitWriter handles;
  RecordLinks links;
  bool hasTexts = false;
  bool isRaw = false;     // the data already hold the texts and their size
  bool rawTexts = false;  // whether they do hold texts

  // Begins another record in the memory of the last one.
  void restart(uint64_t handle) {
    own = handle;
    data.clear();
    texts.clear();
    handles.clear();
    hasTexts = isRaw = rawTexts = false;
  }

  [[nodiscard]] int version() const { return context.version; }
  [[nodiscard]] static bool failed() { return false; }

  bool b(bool value) {
    data.b(value);
    return value;
  }
  unsigned bb(unsigned value) {
    data.bb(value);
    return value;
  }
  unsigned bit3(unsigned value) {
    data.bit3(value);
    return value;
  }
  int bs(int value) {
    data.bs(value);
    return value;
  }
  int32_t bl(int32_t value) {
    data.bl(value);
    return value;
  }
  uint64_t bll(uint64_t value) {
    data.bll(value);
    return value;
  }
  unsigned rc(unsigned value) {
    data.rc(value);
    return value;
  }
  unsigned rs(unsigned value) {
    data.rs(value);
    return value;
  }
  uint32_t rl(uint32_t value) {
    data.rl(value);
    return value;
  }
  uint64_t rll(uint64_t value) {
    data.rll(value);
    return value;
  }
  double bd(double value) {
    data.bd(value);
    return value;
  }
  double rd(double value) {
    data.rd(value);
    return value;
  }
  double dd(double value, double otherwise) {
    data.dd(value, otherwise);
    return value;
  }
  double bt(double value);
  GcGePoint3d bd3(const GcGePoint3d& value) {
    data.bd3(value);
    return value;
  }
  GcGePoint3d rd3(const GcGePoint3d& value) {
    data.rd3(value);
    return value;
  }
  GcGePoint2d bd2(const GcGePoint2d& value) {
    data.bd2(value);
    return value;
  }
  GcGePoint2d rd2(const GcGePoint2d& value) {
    data.rd2(value);
    return value;
  }
  GcGeVector3d be(const GcGeVector3d& value);
  GcView t(GcView value);
  GcCmEntityColor cmc(GcCmEntityColor value);
  GcDbObjectId h(unsigned code, GcDbObjectId id);
  GcDbObjectId h(unsigned code, GcDbObjectId id, unsigned&) { return h(code, id); }
  const GcArray<uint8_t>& bytes(const GcArray<uint8_t>& value, size_t size);
  static int count(int32_t value, unsigned = 1) { return value; }
};

}  // namespace gc::dwg
