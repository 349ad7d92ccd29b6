"""Reads DWG files of R2000 by GDAL: gdal_reader.py FILE ... prints one line of JSON for each file, the list of
[class, layer, text, points]. Exit code 77 where there is no GDAL."""
import json
import sys

try:
    from osgeo import gdal, ogr
except ImportError:
    print("no reader: no GDAL", file=sys.stderr)
    sys.exit(77)

ogr.UseExceptions()
gdal.PushErrorHandler("CPLQuietErrorHandler")


def points_of(geometry):
    if geometry is None:
        return []
    if geometry.GetGeometryCount() > 0:
        return points_of(geometry.GetGeometryRef(0))
    return [list(geometry.GetPoint(i)) for i in range(geometry.GetPointCount())]


def features(path):
    found = []
    source = ogr.Open(path)
    for i in range(source.GetLayerCount()):
        layer = source.GetLayer(i)
        while (feature := layer.GetNextFeature()) is not None:
            found.append([feature.GetField("cadgeom_type"), layer.GetName(), feature.GetField("text") or "",
                          points_of(feature.GetGeometryRef())])
    return found


for name in sys.argv[1:]:
    try:
        print(json.dumps(features(name)))
    except RuntimeError as error:
        print(json.dumps(str(error)))
