// Commands sent by programs.
#include <cstdarg>
#include <vector>

#include "ed/gced.h"
#include "host/ap/docmanager.h"
#include "host/ed/commandline.h"
#include "host/ed/editor.h"

using ed::InputItem;

namespace {

InputItem pointItem(const gds_point point, bool flat) {
  InputItem item = InputItem::of(InputItem::Kind::Point);
  item.point = {point[0], point[1], flat ? 0.0 : point[2]};
  item.point2d = flat;
  return item;
}

InputItem numberItem(InputItem::Kind kind, double number) {
  InputItem item = InputItem::of(kind);
  item.number = number;
  return item;
}

// An entity, or the entities of a set. False for a name of neither.
bool nameItem(const gds_name name, bool isSet, InputItem& item) {
  if (!isSet) {
    item = InputItem::of(InputItem::Kind::Entity);
    return gcdbGetObjectId(item.entity, name) == Gcad::eOk;
  }
  item = InputItem::of(InputItem::Kind::Set);
  int32_t length = 0;
  if (gcedSSLength(name, &length) != RTNORM) return false;
  for (int32_t i = 0; i < length; ++i) {
    gds_name entity = {};
    GcDbObjectId id;
    if (gcedSSName(name, i, entity) == RTNORM && gcdbGetObjectId(id, entity) == Gcad::eOk) item.set.push_back(id);
  }
  return true;
}

bool itemOfNode(const resbuf& node, InputItem& item) {
  switch (node.restype) {
    case RTSTR:
      item = InputItem::ofText(node.resval.rstring != nullptr ? GcView(node.resval.rstring) : GcView());
      break;
    case RTSHORT: item = numberItem(InputItem::Kind::Integer, node.resval.rint); break;
    case RTLONG: item = numberItem(InputItem::Kind::Integer, node.resval.rlong); break;
    case RTREAL:
    case RTANG: item = numberItem(InputItem::Kind::Real, node.resval.rreal); break;
    case RTPOINT:
    case RT3DPOINT: item = pointItem(node.resval.rpoint, node.restype == RTPOINT); break;
    case RTENAME:
    case RTPICKS: return nameItem(node.resval.rlname, node.restype == RTPICKS, item);
    default: return false;
  }
  return true;
}

int runItems(std::vector<InputItem> items) {
  const ap::Document* document = ap::currentDocument();
  if (document == nullptr || items.empty()) return RTERROR;
  switch (ed::editorOf(*document).commandLine().runWhole(std::move(items))) {
    case ed::FeedStatus::Done: return RTNORM;
    case ed::FeedStatus::Cancelled: return RTCAN;
    case ed::FeedStatus::Refused:
    case ed::FeedStatus::Unknown: break;
  }
  return RTERROR;
}

}  // namespace

int gcedCmdS(const resbuf* items) {
  std::vector<InputItem> list;
  for (; items != nullptr && items->restype != RTNONE; items = items->rbnext) {
    list.emplace_back();
    if (!itemOfNode(*items, list.back())) return RTERROR;
  }
  return runItems(std::move(list));
}

int gcedCommandS(int type, ...) {
  std::vector<InputItem> list;
  va_list arguments;
  va_start(arguments, type);
  bool good = true;
  for (int next = type; good && next != RTNONE && next != 0; next = va_arg(arguments, int)) {
    InputItem item;
    switch (next) {
      case RTSTR: {
        const GCHAR* text = va_arg(arguments, const GCHAR*);
        item = InputItem::ofText(text != nullptr ? GcView(text) : GcView());
        break;
      }
      case RTSHORT: item = numberItem(InputItem::Kind::Integer, va_arg(arguments, int)); break;
      case RTLONG: item = numberItem(InputItem::Kind::Integer, va_arg(arguments, int)); break;
      case RTREAL:
      case RTANG: item = numberItem(InputItem::Kind::Real, va_arg(arguments, double)); break;
      case RTPOINT:
      case RT3DPOINT: item = pointItem(va_arg(arguments, const double*), next == RTPOINT); break;
      case RTENAME:
      case RTPICKS: good = nameItem(va_arg(arguments, const int64_t*), next == RTPICKS, item); break;
      default: good = false;
    }
    list.push_back(std::move(item));
  }
  va_end(arguments);
  return good ? runItems(std::move(list)) : RTERROR;
}
