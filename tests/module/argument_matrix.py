#!/usr/bin/env python3
"""Every way of calling the module's functions wrongly: argument_matrix.py GCAD FUNCTIONS.json

For each function of the table below: no arguments, too few, and in each place a value of every other type. What must
be printed follows from four texts per function (for an empty call, a wrong first argument, a missing one, a wrong
further one), given here by name. Every refused call yields nil, leaves nothing open and the drawing as it was.
Functions that the module marks as not built are passed over.
"""
import json
import os
import shlex
import subprocess
import sys

NONE = "Brak argumentów wywołania funkcji.\n"
TYPE = "Błędny typ argumentu\n"
VALUE = "Błędny typ argumentu.\n"
COUNT = "Błędna liczba argumentów\n"
QUIET = ""

# Values as LISP writes them, by the type the module sees.
SAMPLES = {
    "ename": "line", "picks": "set", "string": '"text"', "real": "1.5", "int": "7", "long": "100000", "T": "T",
    "nil": "nil", "point": "'(1.0 2.0 3.0)", "point2": "'(1 2)", "list": "'(1 2 3 4)", "symbol": "'symbol",
}
# What each form of argument takes.
TAKES = {
    "ename": {"ename"}, "string": {"string"}, "space": {"string"}, "real": {"real"}, "int": {"int"},
    "number": {"real", "int"}, "point": {"point", "point2"}, "flag": {"T", "nil"}, "picks": {"ename", "picks"},
    "place": {"string", "ename"},
}

# Families by their four texts: empty call, first argument, missing argument, further argument.
ENTITY = (QUIET, TYPE, COUNT, TYPE)
SPACE = (QUIET, NONE, COUNT, TYPE)
NAME = (NONE, NONE, NONE, TYPE)
LDATA = (NONE, VALUE, NONE, VALUE)
VIEWPORT = (QUIET, TYPE, TYPE, TYPE)
COUNTED = (COUNT, TYPE, COUNT, TYPE)

# Name: (texts, required arguments, exceptions). Exceptions: the good value of a form by the form's name; "points", the
# text for a wrong point; "list", the text for a list, which is several arguments to a function that takes one alone.
FUNCTIONS = {
    "kel_getproperty": ((NONE, TYPE, NONE, TYPE), "ename", {}),
    "kel_insertblock": (SPACE, "string point string number number number number", {}),
    "kel_offset": (ENTITY, "ename real", {}),
    "kel_setbulge": (ENTITY, "ename int real", {"ename": "polyline"}),
    "kel_getbulge": (ENTITY, "ename int", {"ename": "polyline"}),
    "kel_addsolid": (SPACE, "space any any any any", {}),
    "kel_addcircle": (SPACE, "space any real", {}),
    "kel_addxline": (SPACE, "space any any", {}),
    "kel_addline": (SPACE, "space any any", {}),
    "kel_addhatch": (SPACE, "space int string int", {}),
    "kel_addtext": (SPACE, "space string any number", {}),
    "kel_addmtext": ((QUIET, NONE, NONE, TYPE), "string point number any", {}),
    "kel_curve_isperiodic": (ENTITY, "ename", {}),
    "kel_curve_isplanar": (ENTITY, "ename", {}),
    "kel_curve_isclosed": (ENTITY, "ename", {}),
    "kel_curve_getstartpoint": (ENTITY, "ename", {}),
    "kel_curve_getstartparam": (ENTITY, "ename", {}),
    "kel_curve_getendpoint": (ENTITY, "ename", {}),
    "kel_curve_getendparam": (ENTITY, "ename", {}),
    "kel_curve_getarea": (ENTITY, "ename", {}),
    "kel_curve_getsecondderiv": (ENTITY, "ename real", {}),
    "kel_curve_getfirstderiv": (ENTITY, "ename real", {}),
    "kel_curve_getpointatparam": (ENTITY, "ename real", {}),
    "kel_curve_getpointatdist": (ENTITY, "ename real", {}),
    "kel_curve_getparamatpoint": (ENTITY, "ename point", {}),
    "kel_curve_getdistatpoint": (ENTITY, "ename point", {}),
    "kel_curve_getparamatdist": (ENTITY, "ename real", {}),
    "kel_curve_getdistatparam": (ENTITY, "ename real", {}),
    "kel_curve_getclosestpointtoprojection": (ENTITY, "ename point point flag", {}),
    "kel_curve_getclosestpointto": (ENTITY, "ename point", {}),
    "kel_delete": (ENTITY, "ename", {}),
    "kel_getclosed": (ENTITY, "ename any", {}),
    "kel_get_constantwidth": (ENTITY, "ename", {"ename": "polyline"}),
    "kel_put_constantwidth": (ENTITY, "ename real", {"ename": "polyline"}),
    "kel_putclosed": (ENTITY, "ename", {"ename": "polyline"}),
    "kel_addlayer": (NAME, "string", {}),
    "kel_addvertex": (ENTITY, "ename int point", {"ename": "polyline"}),
    "kel_adddimstyle": (NAME, "string", {}),
    "kel_addregion": ((NONE, NONE, QUIET, TYPE), "space", {}),
    "kel_get_coordinates": (ENTITY, "ename", {"ename": "polyline"}),
    "kel_get_coordinate": (ENTITY, "ename int", {"ename": "polyline"}),
    "kel_put_coordinate": (ENTITY, "ename int point", {"ename": "polyline"}),
    "kel_copy": (COUNTED, "ename", {}),
    "kel_move": (ENTITY, "ename point point", {}),
    "kel_rotate": (ENTITY, "ename point real", {}),
    "kel_mirror": (ENTITY, "ename point point", {}),
    "kel_update": (ENTITY, "ename", {}),
    "kel_put_layeron": (NAME, "string flag", {}),
    "kel_ldata_delete": (LDATA, "place string", {}),
    "kel_ldata_put": (LDATA, "place string string", {}),
    "kel_ldata_get": (LDATA, "place string", {}),
    "kel_setwidth": (ENTITY, "ename int number number", {"ename": "polyline"}),
    "kel_erased_p": (ENTITY, "ename", {}),
    "kel_put_linetypegeneration": (ENTITY, "ename", {"ename": "polyline"}),
    "kel_put_type": (ENTITY, "ename int", {"ename": "polyline"}),
    "kel_put_activedimstyle": (SPACE, "string", {}),
    "kel_put_name": (SPACE, "string string", {}),
    "kel_put_paternangle": (ENTITY, "ename number", {}),
    "kel_put_paternscale": (ENTITY, "ename number", {}),
    "kel_getarea": (ENTITY, "ename", {}),
    "kel_getboundingbox": (ENTITY, "ename", {}),
    "kel_evaluate": (ENTITY, "ename", {}),
    "kel_put_arrowheadblock": (ENTITY, "ename string", {}),
    "kel_put_arrowheadtype": (ENTITY, "ename int", {}),
    "kel_ldata_list": (LDATA, "place", {}),
    "kel_ldata_list_no_close": (LDATA, "ename", {}),
    "kel_insertloopat": (ENTITY, "ename int int any", {}),
    "kel_appendouterloop": (ENTITY, "ename any", {}),
    "kel_set_colorflayer": (NAME, "string int", {}),
    "kel_deletelayer": (NAME, "string", {}),
    "kel_xdata_list": ((NONE, TYPE, NONE, TYPE), "ename", {}),
    "kel_put_insertionpoint": (ENTITY, "ename point", {}),
    "kel_put_height": (ENTITY, "ename real", {}),
    "kel_put_activeucs": (COUNTED, "string", {"list": COUNT}),
    "kel_put_activeucs2": (COUNTED, "string", {"list": COUNT}),
    "kel_put_activeucs3": (COUNTED, "string", {"list": COUNT}),
    "kel_put_activelayout": (SPACE, "string", {}),
    "kel_put_attachmentpoint": (ENTITY, "ename int", {}),
    "kel_addviewport": ((QUIET, NONE, NONE, TYPE), "string point number number", {}),
    "kel_display": (VIEWPORT, "ename any", {}),
    "kel_put_activeviewport": (ENTITY, "ename", {}),
    "kel_put_standardscale": (VIEWPORT, "ename number", {}),
    "kel_put_customscale": (VIEWPORT, "ename number", {}),
    "kel_put_displaylocked": (VIEWPORT, "ename", {}),
    "kel_zoomwindow": (COUNTED, "point any", {}),
    "kel_zoomscaled": (COUNTED, "number", {"list": COUNT}),
    "kel_put_supportpath": (SPACE, "string", {}),
    "kel_ssdragmove": ((NONE, NONE, NONE, NONE), "string picks point any", {"points": TYPE}),
    "kel_ssdragrotate": ((NONE, NONE, NONE, NONE), "string picks point any", {"points": TYPE}),
    "kel_ssdragmove_x": ((NONE, NONE, NONE, NONE), "picks point any", {"points": TYPE}),
    "kel_ssdragrotate_x": ((NONE, NONE, NONE, NONE), "picks point any", {"points": TYPE}),
}

# Functions with rules of their own; their transcripts hold every case.
ELSEWHERE = {
    "kel_getvariable", "kel_setvariable", "kel_getcollection", "kel_addentity", "kel_adddimentity", "kel_getattributes",
    "kel_intersectwith", "kel_putproperty", "kel_getdimstyle", "kel_addpolyline", "kel_get_activeprofile",
    "kel_put_coordinates", "kel_search_dict_vlax", "kel_search_dict_kel", "addreact", "removereact",
    "kel_getactivespacename", "kel_getactivelayout", "kel_get_usercoordinatesystems", "kel_adduces", "kel_addlayout",
    "kel_get_layouts", "kel_put_mspace", "kel_get_entinlayout", "kel_getblockdescription", "kel_get_supportpath",
    "kel_dbx_get_list_block_dwg", "kel_dbx_copy_blok",
}

SETUP = """
(setq line (kel_addline "ModelSpace" '(0 0) '(3 4)))
(setq polyline (kel_addpolyline "ModelSpace" '(0 0) '(5 0) '(5 5)))
(setq set (ssadd line))
"""
STATE = "(list (length (kel_get_entinlayout)) (kel_get_coordinates polyline) (kel_curve_getendpoint line))"
STATE_WITHOUT_LAYOUTS = "(list (kel_get_coordinates polyline) (kel_curve_getendpoint line))"


class Host:
    def __init__(self, gcad):
        command = shlex.split(os.environ.get("GC_EMULATOR", "")) + [gcad, "repl", "--json"]
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL)

    def ask(self, form):
        self.process.stdin.write((json.dumps({"eval": form}) + "\n").encode())
        self.process.stdin.flush()
        answer = self.process.stdout.readline()
        if not answer:
            sys.exit(f"gcad ended at {form}")
        return json.loads(answer)


def sample(form, samples):
    if form in samples:
        return samples[form]
    if form == "space":
        return '"ModelSpace"'
    if form == "any":
        return SAMPLES["point"]
    return SAMPLES[sorted(TAKES[form])[0]]


def calls(name):
    """(arguments, text that must be printed) for every wrong call of the function."""
    (empty, first, missing, wrong), forms, samples = FUNCTIONS[name]
    forms = forms.split()
    good = [sample(form, samples) for form in forms]
    yield [], empty
    for count in range(1, len(forms)):
        yield good[:count], missing
    for place, form in enumerate(forms):
        if form == "any":
            continue
        text = first if place == 0 else samples.get("points", wrong) if form == "point" else wrong
        for kind, value in SAMPLES.items():
            if kind not in TAKES[form]:
                yield good[:place] + [value] + good[place + 1:], samples.get(kind, text) if kind == "list" else text
    if forms[0] == "space":
        yield ['"Elsewhere"'] + good[1:], TYPE


def main():
    gcad, table = sys.argv[1:3]
    with open(table, encoding="utf-8") as file:
        rows = json.load(file)["functions"]
    built = {row["name"] for row in rows if row["built"]}
    unknown = {row["name"] for row in rows} ^ (set(FUNCTIONS) | ELSEWHERE)
    if unknown:
        sys.exit("no rules for: " + " ".join(sorted(unknown)))
    host = Host(gcad)
    host.ask(SETUP)
    state = STATE if "kel_get_entinlayout" in built else STATE_WITHOUT_LAYOUTS
    before = host.ask(state)["value"]
    count, failures = 0, 0
    for name in FUNCTIONS:
        if name not in built:
            continue
        for arguments, text in calls(name):
            form = f"({name} {' '.join(arguments)})" if arguments else f"({name})"
            reply = host.ask(form)
            count += 1
            good = (reply["status"] == "done" and reply["value"] == "nil" and reply["printed"] == text
                    and reply["open"] == [])
            if not good:
                failures += 1
                print(f"{form}\n  expected {text!r} and nil\n  got {json.dumps(reply, ensure_ascii=False)}")
        if host.ask(state)["value"] != before:
            failures += 1
            print(f"{name}: the drawing has changed")
            before = host.ask(state)["value"]
    print(f"{count} wrong calls, {failures} failures")
    sys.exit(1 if failures or count == 0 else 0)


if __name__ == "__main__":
    main()
