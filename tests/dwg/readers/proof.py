"""Drawings we write in DWG, read back by two readers of other authors and compared object by object.

proof.py --gcad PROGRAM [--count N] [--seed S] [--samples FOLDER] [--keep FOLDER] [--table]

Random drawings of all classes go from ezdxf through gcad into DWG of every version; LibreDWG reads them all (its
JavaScript build, under Node), GDAL those of R2000 with the classes it knows. Sample drawings are changed by a program,
saved, and read too. Exit code 1 when a difference is neither none nor explained in compare.py; 77 where neither reader
is installed. None of the readers is the format owner's program."""
import argparse
import collections
import glob
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
try:
    import generate
except ImportError:
    print("skipped: no ezdxf")
    sys.exit(77)
import compare

HERE = os.path.dirname(os.path.abspath(__file__))
VERSIONS = ["R2000", "R2004", "R2010", "R2013", "R2018"]
AT_ONCE = 10  # files of one process of a reader
SECONDS = 60  # for one process
# What a program adds to a sample: entities, and a layer for them.
CHANGE = """(progn
 (entmake '((0 . "LAYER") (100 . "AcDbSymbolTableRecord") (100 . "AcDbLayerTableRecord") (2 . "ADDED") (70 . 0) (62 . 3)
            (6 . "Continuous")))
 (entmake '((0 . "LINE") (8 . "ADDED") (10 1.0 2.0 3.0) (11 4.0 5.0 6.5)))
 (entmake '((0 . "CIRCLE") (8 . "ADDED") (10 7.0 8.0 0.0) (40 . 2.25)))
 (entmake '((0 . "TEXT") (8 . "ADDED") (10 1.0 1.0 0.0) (40 . 2.5) (1 . "added"))))"""


class Tally:
    def __init__(self):
        self.same = collections.Counter()
        self.proxies = collections.Counter()
        self.faults = []
        self.drawings = collections.Counter()

    def count(self, version, meant, found, where, compared):
        key = (version, meant.kind)
        if found is not None and found.kind is None:
            return
        if found is None:
            self.faults.append(f"{where} {meant.kind} {meant.handle:X} is not found")
            return
        if found.kind != meant.kind:
            # What is a proxy to us may be a record of a class the reader knows.
            if meant.kind.startswith("ACAD_PROXY") or found.kind.startswith("ACAD_PROXY"):
                self.proxies[key] += 1
            else:
                self.faults.append(f"{where} {meant.kind} {meant.handle:X} became {found.kind}")
            return
        if compare.is_misread(meant, version):
            return
        different = list(compared(meant, found))
        for code, first, second in different:
            self.faults.append(f"{where} {meant.kind} {meant.handle:X}: {code}: {str(first)[:80]} -> {str(second)[:80]}")
        if not different:
            self.same[key] += 1

    def proxy_of_known(self):
        """Classes that are written as themselves may not turn into proxies here and there."""
        return sorted(f"{kind} is a proxy in {version} {count} times, itself {self.same[version, kind]} times"
                      for (version, kind), count in self.proxies.items()
                      if self.same[version, kind] > 0 and not kind.startswith("ACAD_PROXY")
                      and kind not in compare.PROXY_AT_TIMES)


def run(command):
    """A reader that does not come to an end has failed."""
    try:
        return subprocess.run(command, capture_output=True, text=True, check=False, cwd=HERE, timeout=SECONDS)
    except subprocess.TimeoutExpired as late:
        return subprocess.CompletedProcess(command, 124, (late.stdout or b"").decode("utf-8", "replace"), "no end")


def gcad(options, *arguments):
    done = run([options.gcad, *arguments])
    if done.returncode != 0:
        raise RuntimeError(f"gcad {' '.join(arguments)}: exit {done.returncode}: {done.stderr[-500:]}")


def has_libredwg():
    return run(["node", "--liftoff-only", "read.mjs"]).returncode == 0 if shutil.which("node") else False


def read_by_libredwg(pairs):
    """DXF files of what the reader found, or why there is none."""
    outcomes = []
    for i in range(0, len(pairs), AT_ONCE):
        some = pairs[i:i + AT_ONCE]
        done = run(["node", "--liftoff-only", "read.mjs", *(name for pair in some for name in pair)])
        lines = [line for line in done.stdout.splitlines() if line == "ok" or line.startswith("failed")]
        outcomes += lines + ["failed: the reader has ended"] * (len(some) - len(lines))
    return outcomes


def check_generated(options, folder, tally):
    jobs = []
    for i in range(options.count):
        version = VERSIONS[i % len(VERSIONS)]
        base = os.path.join(folder, f"{options.seed + i}-{version}")
        generate.make(version, options.seed + i, base + ".dxf")
        gcad(options, "convert", base + ".dxf", base + ".dwg", "-f", "--as", version)
        jobs.append((version, base))
    compare_all(jobs, tally, compare.differences)


def check_samples(options, folder, tally):
    jobs = []
    for path in sorted(glob.glob(os.path.join(options.samples, "*.d[wx][gf]"))):
        for version in VERSIONS:
            base = os.path.join(folder, f"{os.path.basename(path)}-{version}")
            for extension in (".dxf", ".dwg"):
                gcad(options, "run", "--no-module", "-d", path, "-e", CHANGE, "-s", base + extension, "-f", "--as", version)
            jobs.append((version, base))
    compare_all(jobs, tally, compare.essential_differences)


def compare_all(jobs, tally, compared):
    outcomes = read_by_libredwg([(base + ".dwg", base + ".read.dxf") for _, base in jobs])
    for (version, base), outcome in zip(jobs, outcomes):
        name = os.path.basename(base)
        if outcome != "ok":
            tally.faults.append(f"{name}: {outcome}")
            continue
        tally.drawings[version] += 1
        found = compare.read(base + ".read.dxf")
        for handle, record in compare.read(base + ".dxf").items():
            tally.count(version, record, found.get(handle), name, compared)


# ---- GDAL ----

GDAL_NAMES = {"LINE": "CADLine", "POINT": "CADPoint", "CIRCLE": "CADCircle", "ARC": "CADArc", "ELLIPSE": "CADEllipse",
              "TEXT": "CADText", "MTEXT": "CADMText", "LWPOLYLINE": "CADLWPolyline", "POLYLINE": "CADPolyline3D",
              "SOLID": "CADSolid", "3DFACE": "CADFace3D", "RAY": "CADUnknown"}


def in_plane(record, codes):
    values = {}
    for code, value in record.groups:
        values.setdefault(code, []).append(value)
    return [(x, y) for code in codes for x, y in zip(values.get(code, []), values.get(code + 10, []))]


def points_meant(record, vertices):
    """Points in the plane a reader of shapes must give back; none for those it approximates."""
    if record.kind in ("LINE", "SOLID", "3DFACE"):
        return in_plane(record, (10, 11) if record.kind == "LINE" else (10, 11, 12, 13))
    if record.kind in ("POINT", "TEXT", "MTEXT"):
        return in_plane(record, (10,))
    if record.kind == "LWPOLYLINE" and not any(code == 42 and value for code, value in record.groups):
        return in_plane(record, (10,))
    if record.kind == "POLYLINE":
        return vertices
    return None


def meant_for_gdal(path):
    """(class, layer, points) of all entities of model space."""
    records = list(compare.read(path).values())
    space = next(r.handle for r in records if r.kind == "BLOCK_RECORD" and r.first(2) == "*MODEL_SPACE")
    meant = []
    for i, record in enumerate(records):
        if record.kind not in GDAL_NAMES or record.first(330) != space or record.first(67, 0) == 1:
            continue
        vertices = []
        for part in records[i + 1:]:
            if part.kind != "VERTEX":
                break
            vertices += in_plane(part, (10,))
        meant.append([GDAL_NAMES[record.kind], str(record.first(8)), points_meant(record, vertices)])
    return meant


def matches(points, found):
    """The same points, without regard to the one that closes a ring."""
    if points is None:
        return True
    found = [p[:2] for p in found]
    if len(found) == len(points) + 1:
        found.pop()
    return len(points) == len(found) and all(compare.is_same(a, b) for p, q in zip(points, found) for a, b in zip(p, q))


def check_by_gdal(options, folder, tally):
    count = max(1, options.count // 5)
    bases = [os.path.join(folder, f"gdal-{options.seed + i}") for i in range(count)]
    for i, base in enumerate(bases):
        generate.make("R2000", options.seed + i, base + ".dxf", simple=True)
        gcad(options, "convert", base + ".dxf", base + ".dwg", "-f", "--as", "R2000")
    for i in range(0, count, AT_ONCE):
        some = bases[i:i + AT_ONCE]
        done = run(["/usr/bin/python3", "gdal_reader.py", *(base + ".dwg" for base in some)])
        if done.returncode == 77:
            return 0
        lines = done.stdout.splitlines()
        for base, line in zip(some, lines + ['"the reader has ended"'] * (len(some) - len(lines))):
            compare_with_gdal(base, json.loads(line), tally)
    return count


def compare_with_gdal(base, found, tally):
    name = os.path.basename(base)
    if isinstance(found, str):
        tally.faults.append(f"{name}: {found}")
        return
    tally.drawings["GDAL"] += 1
    left = [feature for feature in found if feature[0] in GDAL_NAMES.values()]
    for kind, layer, points in meant_for_gdal(base + ".dxf"):
        twin = next((f for f in left if f[0] == kind and f[1].upper() == layer and matches(points, f[3])), None)
        if twin is None:
            tally.faults.append(f"{name}: {kind} on {layer} {str(points)[:100]} is not found")
        else:
            left.remove(twin)
            tally.same["GDAL", kind] += 1
    for feature in left:
        tally.faults.append(f"{name}: {feature[0]} on {feature[1]} is not in the drawing")


# ---- report ----

def print_table(tally):
    versions = VERSIONS + ["GDAL"]
    print("| class | " + " | ".join(versions) + " |")
    print("|---|" + "---|" * len(versions))
    for kind in sorted({kind for _, kind in [*tally.same, *tally.proxies]}):
        cells = []
        for version in versions:
            same, proxies = tally.same[version, kind], tally.proxies[version, kind]
            cells.append(f"{same} proxies: {proxies}" if same and proxies else f"proxies: {proxies}" if proxies else str(same or ""))
        print(f"| {kind} | " + " | ".join(cells) + " |")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--gcad", required=True)
    parser.add_argument("--count", type=int, default=1000)
    parser.add_argument("--seed", type=int, default=random.randrange(10**6))
    parser.add_argument("--samples", default="")
    parser.add_argument("--keep", default="")
    parser.add_argument("--table", action="store_true")
    options = parser.parse_args()
    options.gcad = os.path.abspath(options.gcad)
    if not has_libredwg():
        print("skipped: no LibreDWG under Node (tools/setup readers)")
        return 77
    print(f"seed {options.seed}")
    folder = options.keep or tempfile.mkdtemp()
    os.makedirs(folder, exist_ok=True)
    tally = Tally()
    check_generated(options, folder, tally)
    has_gdal = check_by_gdal(options, folder, tally) > 0
    if options.samples:
        check_samples(options, folder, tally)
    if options.table:
        print_table(tally)
    faults = tally.faults + tally.proxy_of_known()
    for fault in faults:
        print(fault)
    if not options.keep:
        shutil.rmtree(folder)
    print(f"{sum(tally.drawings.values())} drawings {dict(tally.drawings)}, {sum(tally.same.values())} objects the same, "
          f"{sum(tally.proxies.values())} proxies, {len(faults)} differences" + ("" if has_gdal else "; no GDAL"))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
