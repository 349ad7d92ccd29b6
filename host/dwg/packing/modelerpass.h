// Bodies of a solid modeller in records.
//
//   [R2013+ and the body stands in the file's data section: nothing] else
//     B empty │ B text │ BS form │ form 1: text, enciphered, in blocks of BL size and characters; size 0 ends them
//                                │ form 2: bytes, which say themselves where they end
//   B picture │ B, 3BD a point of the body │ BL isolines │ B │ BL wires … │ BL silhouettes …
//   B no second body, else B text │ BS form │ its bytes │ R2007+: BL materials of faces │ R2013+: B revision, its number, BL end
// Source: the public description of the format; bodies in files of every version.
#pragma once

#include "host/db/entities/modeler_body.h"
#include "host/db/entities/modeler_text.h"
#include "host/dwg/record/pass.h"

namespace gc::dwg::packing {

// Copies the picture from one record (or what was kept of one) to another. False for one that makes no sense.
struct PictureForm {
  bool shortColors = false;        // before R2007
  bool silhouettesAnyway = false;  // R13
  static PictureForm of(int version) { return {version < kR2007, version < kR14}; }
};
bool copyPicture(BitReader& from, PictureForm fromForm, BitWriter& to, PictureForm toForm);

void passModelerText(RecordIn& record, GcArray<GcDbModelerLine>& lines);
void passModelerText(RecordOut& record, const GcArray<GcDbModelerLine>& lines);
void passModelerBytes(RecordIn& record, GcArray<uint8_t>& bytes);
void passModelerBytes(RecordOut& record, const GcArray<uint8_t>& bytes);
void passPicture(RecordIn& record, GcArray<uint8_t>& picture);
void passPicture(RecordOut& record, const GcArray<uint8_t>& picture);

// Whether the record has bytes rather than text. The modellers of before R2004 know no bytes; later ones know those of
// their own version and before.
bool goesAsBytes(const GcDbModelerParts& body, int version);

// "{7CF5F000-46FC-4A48-BEEF-14B47A01FB47}" as records have it.
struct RevisionNumber {
  uint32_t first = 0;
  uint16_t second = 0, third = 0;
  uint8_t rest[8] = {};
  static RevisionNumber of(GcView text);
  [[nodiscard]] GcString text() const;  // empty for none
};

template <class Pass>
void passRevision(Pass& pass, const GcDbModelerParts& body) {
  RevisionNumber number = RevisionNumber::of(view(body.revisionId));
  pass.b(body.hasRevision);
  pass.bl(number.first);
  pass.bs(number.second);
  pass.bs(number.third);
  for (uint8_t& byte : number.rest) pass.rc(byte);
  if constexpr (!Pass::kWriting) body.revisionId = number.text();
  int32_t end = 0;
  pass.bl(end);
  pass.must(end == 0);
}

// A bit for none, else the body as bytes.
template <class Pass>
void passSecond(Pass& pass, const GcDbModelerParts& body) {
  constexpr int kBytes = 2;
  bool isAlone = body.second == nullptr || gcmodeler::binarySize(gcmodeler::viewOf(*body.second)) == 0;
  pass.b(isAlone);
  if (isAlone) return;
  bool isText = false;
  int form = kBytes;
  pass.b(isText);
  pass.bs(form);
  pass.must(!isText && form == kBytes && body.second != nullptr);
  if (!pass.failed()) passModelerBytes(pass.io().rec, *body.second);
}

template <class Pass>
void passBody(Pass& pass, const GcDbModelerParts& body) {
  constexpr int kText = 1, kBytes = 2;
  if (!pass.io().rec.links.bodyIsApart) {
    int form = goesAsBytes(body, pass.version()) ? kBytes : kText;
    bool isEmpty = form == kText && body.lines.isEmpty();
    pass.b(isEmpty);
    if (!isEmpty) {
      bool isText = form == kText;
      pass.b(isText);
      pass.bs(form);
      pass.must(form == kText || form == kBytes);
      if (form == kText)
        passModelerText(pass.io().rec, body.lines);
      else
        passModelerBytes(pass.io().rec, body.bytes);
    }
  }
  passPicture(pass.io().rec, body.picture);
  passSecond(pass, body);
  if (pass.version() >= kR2007) {
    int32_t materials = 0;
    pass.bl(materials);
    pass.must(materials == 0);
  }
  if (pass.version() >= kR2013) passRevision(pass, body);
}

}  // namespace gc::dwg::packing
