#include "host/db/core/handletext.h"

#include "db/dbdefs.h"

GcText gcdbHandleText(uint64_t handle) {
  GCHAR buffer[20];
  GcDbHandle(handle).getIntoAsciiBuffer(buffer, 20);
  return buffer;
}

uint64_t gcdbHandleValue(GcView text) {
  uint64_t value = 0;
  if (text.size() > 16) return 0;
  for (const GCHAR unit : text) {
    const unsigned u = gcUpper(unit);
    if (u >= '0' && u <= '9')
      value = value * 16 + (u - '0');
    else if (u >= 'A' && u <= 'F')
      value = value * 16 + (u - 'A' + 10);
    else
      return 0;
  }
  return value;
}
