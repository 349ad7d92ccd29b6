// Objects kept as the bits of a DWG record can come to life without their file: the codec that knows the records
// (host/dwg) says here how.
#pragma once

class GcDbObject;
struct GcDbZombieData;

// Fills `object`, which stands in the database under its own id, from the bits the zombie kept. False when they are not
// what its class takes; the object is then to be thrown away.
using GcDbRawBitsReader = bool (*)(const GcDbZombieData& data, GcDbObject& object);

// Called once, when the program starts.
void gcdbSetRawBitsReader(GcDbRawBitsReader reader);
