// Life and sleep of objects whose classes come and go: zombies become live objects when their class is
// registered, live ones become zombies before it goes, with everything they hold.
#pragma once

class GcDbDatabase;

// Brings the database's zombies to life as far as their classes are registered. Readers of files call it too.
void gcdbWakeZombies(GcDbDatabase& database);

// Watches classes come and go from now on. Calling it again changes nothing.
void gcdbWatchClasses();
