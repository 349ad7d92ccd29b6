#include "host/lisp/lib/unavailable.h"

#include <algorithm>

namespace lisplib {

namespace {

constexpr const char* kAutomation = "ActiveX automation is not available";
constexpr const char* kDialogs = "dialog boxes are not available";
constexpr const char* kReactors = "reactors of this kind are not available";

struct Prefix {
  lisp::TextView start;
  const char* reason;
};
constexpr Prefix kPrefixes[] = {
    {GC_T("VLA-"), kAutomation},
    {GC_T("VLAX-"), kAutomation},
    {GC_T("VLR-"), kReactors},
};

constexpr lisp::TextView kDialogNames[] = {
    GC_T("ACAD_COLORDLG"), GC_T("ACAD_HELPDLG"),     GC_T("ACAD_TRUECOLORDLG"), GC_T("ACTION_TILE"),
    GC_T("ADD_LIST"),      GC_T("CLIENT_DATA_TILE"), GC_T("DIMX_TILE"),         GC_T("DIMY_TILE"),
    GC_T("DONE_DIALOG"),   GC_T("END_IMAGE"),        GC_T("END_LIST"),          GC_T("FILL_IMAGE"),
    GC_T("GET_ATTR"),      GC_T("GET_TILE"),         GC_T("LOAD_DIALOG"),       GC_T("MODE_TILE"),
    GC_T("NEW_DIALOG"),    GC_T("SET_TILE"),         GC_T("SLIDE_IMAGE"),       GC_T("START_DIALOG"),
    GC_T("START_IMAGE"),   GC_T("START_LIST"),       GC_T("TERM_DIALOG"),       GC_T("UNLOAD_DIALOG"),
    GC_T("VECTOR_IMAGE"),
};

}  // namespace

const char* reasonUnavailable(lisp::TextView name) {
  for (const Prefix& prefix : kPrefixes)
    if (name.substr(0, prefix.start.size()) == prefix.start) return prefix.reason;
  return std::find(std::begin(kDialogNames), std::end(kDialogNames), name) == std::end(kDialogNames) ? "" : kDialogs;
}

}  // namespace lisplib
