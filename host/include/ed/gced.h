// The editor's interface for plug-ins: LISP functions and their arguments, messages, variables, commands,
// selection sets. All of it on the main thread, between the init and the unload message of the plug-in.
#pragma once

#include "db/objectid.h"
#include "ge/matrix3d.h"
#include "rx/gcformat.h"
#include "rx/gcstring.h"
#include "rx/resbuf.h"

class GcDbViewport;

// ---- LISP functions --------------------------------------------------------------------------------------

// Defines a LISP function of the calling plug-in in the current document, under a code of the plug-in's own.
// Legal in load-document and later messages. RTNORM, or RTERROR for an empty name.
int gcedDefun(const GCHAR* name, int code);
int gcedUndef(const GCHAR* name, int code);
// Registers a function to be called directly for the code instead of an invoke message.
int gcedRegFunc(int (*function)(), int code);
// The code of the LISP function being called; legal in the invoke message only, RTERROR elsewhere.
int gcedGetFunCode();
// The argument chain of the call; null when there are no arguments. The host owns it and keeps it until the
// function has answered. Legal in the invoke message only.
resbuf* gcedGetArgs();

// Results of the call; the last one wins, none gives nil. RTNORM, RTERROR outside a call.
int gcedRetNil();
int gcedRetT();
int gcedRetReal(double value);
int gcedRetInt(int value);
int gcedRetStr(const GCHAR* text);
int gcedRetPoint(const gds_point point);
int gcedRetName(const gds_name name, int type);  // RTENAME or RTPICKS
int gcedRetList(const resbuf* chain);            // copied; outermost brackets around the whole chain add no level
int gcedRetVal(const resbuf* value);             // one node, copied
int gcedRetVoid();                               // shows nothing, like (princ)

// ---- messages --------------------------------------------------------------------------------------------

// Prints on the command line, formatted as gcutFormat does. RTNORM.
int gcutPrintf(const GCHAR* format, ...);
// Reports a failure to the person: prints the text as it stands.
int gcdbFail(const GCHAR* message);

// ---- settings --------------------------------------------------------------------------------------------

// System variables, any case. The value's string (RTSTR) is the caller's to free with gcutDelBuffer.
int gcedGetVar(const GCHAR* name, resbuf* value);
int gcedSetVar(const GCHAR* name, const resbuf* value);  // RTERROR for a wrong type, range or a read-only one
// Environment entries of the host's profile ("ACAD" is the support path).
int gcedGetEnv(const GCHAR* name, GcString& value);  // RTERROR when there is none
int gcedSetEnv(const GCHAR* name, const GCHAR* value);

// ---- entities --------------------------------------------------------------------------------------------

// The next top-level entity of the drawing's current space after the named one (the first for null); with
// sub-entities when asked by entity name of one. RTERROR at the end.
int gcdbEntNext(const gds_name name, gds_name result);
resbuf* gcdbEntGet(const gds_name name);  // the caller releases it; null on failure
resbuf* gcdbEntGetX(const gds_name name, const resbuf* applications);
int gcdbEntUpd(const gds_name name);  // draws the entity anew
int gcedUpdateDisplay();

// ---- commands --------------------------------------------------------------------------------------------

// Runs a command with its input items (RTSTR, RTREAL, RTSHORT, RTPOINT, RT3DPOINT, RTENAME, RTPICKS …) up to
// RTNONE. RTNORM, RTERROR when the command does not exist or refuses an item, RTCAN when it is cancelled.
int gcedCommandS(int type, ...);
int gcedCmdS(const resbuf* items);

// ---- selection sets --------------------------------------------------------------------------------------

int gcedSSLength(const gds_name set, int32_t* length);
int gcedSSName(const gds_name set, int index, gds_name entity);

// ---- geometry at the screen ------------------------------------------------------------------------------

// Between coordinate systems: RTSHORT nodes 0 world, 1 user, 2 display, 3 paper display, or an RTENAME, or a
// normal as RT3DPOINT. `displacement`: the point is a vector.
int gcedTrans(const gds_point point, const resbuf* from, const resbuf* to, int displacement, gds_point result);
// A temporary line on the screen; colour -1 draws in complement, so that drawing again erases.
int gcedGrDraw(const gds_point from, const gds_point to, int color, int highlight);
// Angle of the direction from one point to another in the XY plane, radians in [0, 2 pi).
double gcutAngle(const gds_point from, const gds_point to);
double gcutDistance(const gds_point from, const gds_point to);

// The keyword typed at the last prompt. RTERROR when there was none.
int gcedGetInput(GcString& keyword);

// Drags a selection set: `sampler` gets the point under the cursor (user coordinates) and fills the matrix; RTNORM
// goes on, anything else cancels. It is asked when the cursor has moved by more than the point tolerance. Cursors:
// 0 the ordinary one, 1, 2. Gives RTNORM with the picked point, RTKWORD (gcedGetInput tells which of the keywords set
// for the next input), RTNONE for Enter, RTCAN for Esc; RTERROR for an empty set, an unknown cursor, or when another
// drag is under way.
int gcedDragGen(const gds_name set, const GCHAR* prompt, int cursor,
                int (*sampler)(gds_point point, double matrix[4][4]), gds_point result);

// The active viewports to and from the records named "*Active" of the viewport table.
Gcad::ErrorStatus gcedVports2VportTableRecords();
Gcad::ErrorStatus gcedVportTableRecords2Vports();
Gcad::ErrorStatus gcedSetCurrentVPort(const GcDbViewport* viewport);
