// Keywords of a prompt, as "Yes No eXit LTYPE,LT": the capitals are what must be typed at least. A part behind a word
// that begins with an underscore gives the names to answer with: "Ja Nein _Yes No".
#pragma once

#include "host/rx/view.h"

namespace ed {

// The keyword as spelled in the list; empty when the typed text is none of them. A leading underscore of the typed
// text is passed over.
[[nodiscard]] GcText matchKeyword(GcView keywords, GcView typed);

}  // namespace ed
