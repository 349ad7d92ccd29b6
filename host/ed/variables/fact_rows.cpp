// Facts: time, names and places, versions. Read-only all of them.
#include <cstdlib>

#include "db/database.h"
#include "host/ap/paths.h"
#include "host/ap/profile.h"
#include "host/db/core/header.h"
#include "host/ed/clock.h"
#include "host/ed/editor.h"
#include "host/ed/variables/rows.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

constexpr VariableKind kInt = VariableKind::Integer;
constexpr VariableKind kReal = VariableKind::Real;
constexpr VariableKind kText = VariableKind::Text;
constexpr VariableKind kPoint2d = VariableKind::Point2d;

// The first of several entries of the environment that is set.
GcText entryOf(std::initializer_list<const GCHAR*> names) {
  GcText value;
  for (const GCHAR* name : names)
    if (ap::profileEntry(name, value) && !value.empty()) return value;
  return {};
}

GcText withSeparator(GcText folder) {
  if (!folder.empty() && folder.back() != GC_T('/') && folder.back() != GC_T('\\')) folder.push_back(GC_T('/'));
  return folder;
}

void drawingName(Editor& editor, VariableValue& value) {
  const GcView path = editor.document().fileName();
  value.text = path.empty() ? GcText(GC_T("Drawing1.dwg")) : GcText(ap::fileNameOf(path));
}

void drawingFolder(Editor& editor, VariableValue& value) {
  const GcText path = ap::absolutePath(editor.document().fileName());
  value.text =
      withSeparator(GcText(*editor.document().fileName() == 0 ? ap::absolutePath(GC_T(".")) : ap::directoryOf(path)));
}

void fullName(Editor& editor, VariableValue& value) {
  value.text = *editor.document().fileName() == 0 ? GcText() : ap::absolutePath(editor.document().fileName());
}

void searchPrefix(Editor&, VariableValue& value) {
  value.text.clear();
  for (const GcText& folder : ap::supportPath()) value.text += withSeparator(folder) + GC_T(";");
}

void profileName(Editor&, VariableValue& value) { static_cast<void>(ap::profileEntry(GC_T("CPROFILE"), value.text)); }

void daysSince(Editor& editor, GcView setting, VariableValue& value) {
  value.real = julianDate(localNow()) - editor.database().header().real(setting, julianDate(localNow()));
}

const VariableRow kRows[] = {
    {"ACADPREFIX", kText, Keep::Computed, "", 0, 0, true, searchPrefix},
    {"ACADVER", kText, Keep::Computed, "24.3", 0, 0, true},
    {"CDATE", kReal, Keep::Computed, "0", 0, 0, true,
     [](Editor&, VariableValue& v) { v.real = calendarDate(localNow()); }},
    {"CPROFILE", kText, Keep::Computed, "Default", 0, 0, true, profileName},
    {"CPUTICKS", kReal, Keep::Computed, "0", 0, 0, true,
     [](Editor&, VariableValue& v) { v.real = static_cast<double>(millisecondsRunning()); }},
    {"DATE", kReal, Keep::Computed, "0", 0, 0, true,
     [](Editor&, VariableValue& v) { v.real = julianDate(localNow()); }},
    {"DWGCODEPAGE", kText, Keep::Header, "ANSI_1252", 0, 0, true},
    {"DWGNAME", kText, Keep::Computed, "", 0, 0, true, drawingName},
    {"DWGPREFIX", kText, Keep::Computed, "", 0, 0, true, drawingFolder},
    {"DWGTITLED", kInt, Keep::Computed, "0", 0, 0, true,
     [](Editor& editor, VariableValue& v) { v.integer = *editor.document().fileName() != 0; }},
    {"HANDLES", kInt, Keep::Computed, "1", 0, 0, true},
    {"LOCALE", kText, Keep::Computed, "ENU", 0, 0, true},
    {"LOCALROOTPREFIX", kText, Keep::Computed, "", 0, 0, true,
     [](Editor&, VariableValue& v) {
       v.text = withSeparator(entryOf({GC_T("LOCALAPPDATA"), GC_T("HOME")}));
     }},
    {"LOGINNAME", kText, Keep::Computed, "", 0, 0, true,
     [](Editor&, VariableValue& v) {
       v.text = entryOf({GC_T("USER"), GC_T("LOGNAME"), GC_T("USERNAME")});
     }},
    {"MILLISECS", kInt, Keep::Computed, "0", 0, 0, true,
     [](Editor&, VariableValue& v) { v.integer = static_cast<int32_t>(millisecondsRunning() & 0x7FFFFFFF); }},
#ifdef _WIN32
    {"PLATFORM", kText, Keep::Computed, "Microsoft Windows (x64)", 0, 0, true},
#else
    {"PLATFORM", kText, Keep::Computed, "Linux (x64)", 0, 0, true},
#endif
    {"PRODUCT", kText, Keep::Computed, "gcad", 0, 0, true},
    {"PROGRAM", kText, Keep::Computed, "gcad", 0, 0, true},
    {"ROAMABLEROOTPREFIX", kText, Keep::Computed, "", 0, 0, true,
     [](Editor&, VariableValue& v) {
       v.text = withSeparator(entryOf({GC_T("APPDATA"), GC_T("HOME")}));
     }},
    {"SAVENAME", kText, Keep::Computed, "", 0, 0, true, fullName},
    {"SCREENSIZE", kPoint2d, Keep::Computed, "1920,1080", 0, 0, true},
    {"SYSCODEPAGE", kText, Keep::Computed, "UTF-8", 0, 0, true},
    {"TDINDWG", kReal, Keep::Computed, "0", 0, 0, true,
     [](Editor& editor, VariableValue& v) { daysSince(editor, GC_T("$TDCREATE"), v); }},
    {"TDUSRTIMER", kReal, Keep::Computed, "0", 0, 0, true,
     [](Editor&, VariableValue& v) { v.real = static_cast<double>(millisecondsRunning()) / 86400000.0; }},
    {"TEMPPREFIX", kText, Keep::Computed, "", 0, 0, true,
     [](Editor&, VariableValue& v) {
       const GcText folder = entryOf({GC_T("TMPDIR"), GC_T("TEMP"), GC_T("TMP")});
       v.text = withSeparator(folder.empty() ? GcText(GC_T("/tmp")) : folder);
     }},
};

}  // namespace

std::span<const VariableRow> factRows() { return kRows; }

}  // namespace ed
