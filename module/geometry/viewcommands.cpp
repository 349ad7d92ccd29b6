// The view, moved and switched through the host's own commands.
#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/results.h"

// Model space when the flag is T, paper space when it is nil or absent.
int putMSpace() {
  const resbuf* flag = gcedGetArgs();
  if (flag != nullptr && flag->restype != RTT && flag->restype != RTNIL) {
    gcdbFail(msg::kWrongType);
    return RTERROR;
  }
  const bool model = flag != nullptr && flag->restype == RTT;
  const GCHAR* command = model ? GC_T("_MSPACE") : GC_T("_PSPACE");
  // Deliberate: the same text for both.
  if (gcedCommandS(RTSTR, command, RTNONE) != RTNORM) gcutPrintf(GC_T("\nNie można ustawić MSPACE."));
  return ret::nothing();
}

int zoomScaled() {
  ArgReader args(rules::kCounted);
  args.expectSingle();
  const double factor = args.number();
  if (args.failed()) return args.status();
  GcString text;
  gcutFormat(text, GC_T("%fX"), factor);
  gcedCommandS(RTSTR, GC_T("_zoom"), RTSTR, GC_T("_s"), RTSTR, text.c_str(), RTNONE);
  return ret::nothing();
}

// Deliberate: the second corner's type is not looked at, and the empty call is reported but counts as done.
int zoomWindow() {
  ArgReader args(rules::kCounted);
  if (args.failed()) return RTNORM;
  const GcGePoint3d first = args.point();
  const GcGePoint3d second = args.anyPoint();
  if (args.failed()) return args.status();
  GcString firstText;
  GcString secondText;
  gcutFormat(firstText, GC_T("%f,%f"), first.x, first.y);
  gcutFormat(secondText, GC_T("%f,%f"), second.x, second.y);
  gcedCommandS(RTSTR, GC_T("_zoom"), RTSTR, GC_T("_w"), RTSTR, firstText.c_str(), RTSTR, secondText.c_str(), RTNONE);
  return ret::nothing();
}
