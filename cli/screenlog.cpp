#include "cli/screenlog.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "host/rx/file/folder.h"
#include "host/rx/text/number.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

// Members stay in the order in which they are put.
using Json = nlohmann::ordered_json;
using Kind = ed::InputItem::Kind;

Json toJson(const GcGePoint3d& point) { return Json::array({point.x, point.y, point.z}); }
Json toJson(GcDbObjectId id) { return gc::hexText(id.handle()); }

Json toJson(const std::vector<GcDbObjectId>& ids) {
  Json list = Json::array();
  for (const GcDbObjectId id : ids) list.push_back(toJson(id));
  return list;
}

Json toJson(const ed::InputItem& item) {
  switch (item.kind) {
    case Kind::Text: return gc::toUtf8(item.text);
    case Kind::Integer: return static_cast<int64_t>(item.number);
    case Kind::Real: return item.number;
    case Kind::Point: return item.point2d ? Json::array({item.point.x, item.point.y}) : toJson(item.point);
    case Kind::Entity: return toJson(item.entity);
    case Kind::EntityPoint: return Json::array({toJson(item.entity), toJson(item.point)});
    case Kind::Set: return toJson(item.set);
    case Kind::Pause: return {{"pause", true}};
    case Kind::Cancel: return nullptr;
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<ScreenLog> ScreenLog::open(const std::string& path, std::string& reason) {
  std::ofstream file(gc::systemPath(gc::pathOfUtf8(path)), std::ios::binary);
  if (file.is_open()) return std::unique_ptr<ScreenLog>(new ScreenLog(std::move(file)));
  reason = path + ": " + std::strerror(errno);
  return nullptr;
}

ScreenLog::ScreenLog(std::ofstream file) : m_file(std::move(file)), m_former(ed::setScreen(this)) {}

ScreenLog::~ScreenLog() { ed::setScreen(m_former); }

void ScreenLog::write(const std::string& record) { m_file << record << '\n' << std::flush; }

namespace {
std::string dumped(const Json& record) { return record.dump(-1, ' ', false, Json::error_handler_t::replace); }
}  // namespace

void ScreenLog::line(const GcGePoint3d& from, const GcGePoint3d& to, int color, bool highlight) {
  write(dumped({{"event", "grdraw"},
                {"from", toJson(from)},
                {"to", toJson(to)},
                {"color", color},
                {"highlight", highlight ? 1 : 0}}));
}

void ScreenLog::dragFrame(int status, const GcGeMatrix3d& matrix, const std::vector<GcDbObjectId>& entities,
                          int cursor) {
  Json numbers = Json::array();
  for (const auto& row : matrix.entry)
    for (const double number : row) numbers.push_back(number);
  write(dumped({{"event", "drag"},
                {"status", status},
                {"matrix", numbers},
                {"entities", toJson(entities)},
                {"cursor", cursor}}));
}

void ScreenLog::command(const std::vector<ed::InputItem>& items) {
  Json list = Json::array();
  for (const ed::InputItem& item : items) list.push_back(toJson(item));
  write(dumped({{"event", "command"}, {"items", list}}));
}

void ScreenLog::viewChanged(const GcGePoint2d& center, double height) {
  write(dumped({{"event", "zoom"}, {"center", {center.x, center.y}}, {"height", height}}));
}

}  // namespace cli
