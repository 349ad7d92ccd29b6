// What the person at the command line reads when a call is refused. Texts are part of the behaviour: letter for
// letter, with their periods and line feeds.
#pragma once

#include "module/app/host.h"

namespace msg {

inline constexpr const GCHAR* kNoArguments = GC_T("Brak argumentów wywołania funkcji.\n");
inline constexpr const GCHAR* kWrongType = GC_T("Błędny typ argumentu\n");
inline constexpr const GCHAR* kTooFew = GC_T("Błędna liczba argumentów\n");
// Deliberate: the functions that keep named values end this text with a period.
inline constexpr const GCHAR* kWrongTypeOfValue = GC_T("Błędny typ argumentu.\n");
inline constexpr const GCHAR* kCannotAttach = GC_T("\nNie można ustawić punktu załącznika dla obiektu AcDbLeader");

}  // namespace msg
