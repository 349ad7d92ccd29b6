// Commands sent by programs.
#include <cstdarg>

#include "ed/gced.h"
#include "host/ap/docmanager.h"
#include "host/ed/commandline.h"
#include "host/ed/screen.h"
#include "host/gced/setname.h"

namespace {

using ed::InputItem;

InputItem pointItem(const double* point, bool is2d) {
  InputItem item = InputItem::of(InputItem::Kind::Point);
  item.point = {point[0], point[1], is2d ? 0.0 : point[2]};
  item.point2d = is2d;
  return item;
}

InputItem numberItem(InputItem::Kind kind, double value) {
  InputItem item = InputItem::of(kind);
  item.number = value;
  return item;
}

InputItem nameItem(const int64_t* name, bool isSet) {
  InputItem item = InputItem::of(isSet ? InputItem::Kind::Set : InputItem::Kind::Entity);
  if (!isSet)
    ignore(gcdbGetObjectId(item.entity, name));
  else if (const ed::SelectionSet* set = gcedSetOf(name))
    item.set = set->ids();
  return item;
}

int run(std::vector<InputItem> items) {
  if (ap::currentDocument() == nullptr || items.empty()) return RTERROR;
  ed::screen().command(items);
  switch (ed::currentEditor().commandLine().runWhole(std::move(items))) {
    case ed::FeedStatus::Done: return RTNORM;
    case ed::FeedStatus::Cancelled: return RTCAN;
    default: return RTERROR;
  }
}

// Takes one argument of the type; false for a type no command takes.
bool takeItem(int type, va_list& arguments, std::vector<InputItem>& items) {
  switch (type) {
    case RTSTR: items.push_back(InputItem::ofText(view(va_arg(arguments, const GCHAR*)))); return true;
    case RTREAL:
    case RTANG:
    case RTORINT: items.push_back(numberItem(InputItem::Kind::Real, va_arg(arguments, double))); return true;
    case RTSHORT:
    case RTLONG: items.push_back(numberItem(InputItem::Kind::Integer, va_arg(arguments, int))); return true;
    case RTPOINT:
    case RT3DPOINT: items.push_back(pointItem(va_arg(arguments, const double*), type == RTPOINT)); return true;
    case RTENAME:
    case RTPICKS: items.push_back(nameItem(va_arg(arguments, const int64_t*), type == RTPICKS)); return true;
    default: return false;
  }
}

}  // namespace

int gcedCommandS(int type, ...) {
  std::vector<InputItem> items;
  va_list arguments;
  va_start(arguments, type);
  bool good = true;
  for (int next = type; good && next != RTNONE && next != 0; next = va_arg(arguments, int))
    good = takeItem(next, arguments, items);
  va_end(arguments);
  return good ? run(std::move(items)) : RTERROR;
}

int gcedCmdS(const resbuf* chain) {
  std::vector<InputItem> items;
  for (const resbuf* node = chain; node != nullptr && node->restype != RTNONE; node = node->rbnext) {
    switch (node->restype) {
      case RTSTR: items.push_back(InputItem::ofText(view(node->resval.rstring))); break;
      case RTREAL: items.push_back(numberItem(InputItem::Kind::Real, node->resval.rreal)); break;
      case RTSHORT: items.push_back(numberItem(InputItem::Kind::Integer, node->resval.rint)); break;
      case RTLONG: items.push_back(numberItem(InputItem::Kind::Integer, node->resval.rlong)); break;
      case RTPOINT:
      case RT3DPOINT: items.push_back(pointItem(node->resval.rpoint, node->restype == RTPOINT)); break;
      case RTENAME:
      case RTPICKS: items.push_back(nameItem(node->resval.rlname, node->restype == RTPICKS)); break;
      default: return RTERROR;
    }
  }
  return run(std::move(items));
}
