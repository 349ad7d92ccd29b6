"""Random drawings of all classes, made by ezdxf: a writer that is neither ours nor the readers'.

A drawing follows from its seed and version alone. Values stay within what the class can mean (an ellipse has a ratio
up to 1, a hatch closed loops), so that every reader must give them back."""
import math
import random

import ezdxf

TEXTS = ["", "A", "Rzut parteru 1:50", "%%c20 \u00b15", "a\\Pb", "{\\C1;red} rest", "x" * 300, "\u0141\u0105ka m\u00b2", "\u4e2d\u6587"]


class Maker:
    def __init__(self, version, seed):
        self.random = random.Random(seed)
        self.version = version
        self.document = ezdxf.new(version)
        self.space = self.document.modelspace()

    # ---- values ----

    def whole(self, low, high):
        return self.random.randint(low, high)

    def chance(self, one_in):
        return self.random.randrange(one_in) == 0

    def real(self):
        kind = self.whole(0, 9)
        if kind == 0:
            return 0.0
        if kind == 1:
            return 1.0
        if kind == 2:
            return float(self.whole(-1000, 1000))
        return self.random.uniform(-5e6, 5e6)

    def length(self):
        return 1.0 if self.chance(5) else self.random.uniform(0.001, 1000)

    def degrees(self):
        return float(self.whole(0, 359)) if self.chance(2) else self.random.uniform(0, 359.9)

    def point(self):
        return self.real(), self.real(), 0.0 if self.chance(2) else self.real()

    def flat(self):
        return self.real(), self.real()

    def near(self, center, reach=100.0):
        return tuple(c + self.random.uniform(-reach, reach) for c in center[:2]) + (0.0,)

    def normal(self):
        if not self.chance(3):
            return 0.0, 0.0, 1.0
        if self.chance(3):
            return 0.0, 0.0, -1.0
        v = [self.random.gauss(0, 1) for _ in range(3)]
        size = math.sqrt(sum(x * x for x in v))
        return tuple(x / size for x in v)

    def text(self):
        # Before R2007 texts are in the code page of the drawing.
        choice = TEXTS if self.document.dxfversion >= "AC1021" else TEXTS[:7]
        return self.random.choice(choice)

    def line_of_text(self):
        text = self.text().replace("\\P", " ") or "text"
        return text[:250]

    def common(self, thickness=False, extrusion=False):
        attributes = {"layer": self.random.choice(self.layers)}
        if self.chance(2):
            attributes["color"] = self.whole(0, 257) % 257
        if self.chance(3):
            attributes["linetype"] = self.random.choice(self.linetypes)
        if self.chance(4):
            attributes["ltscale"] = self.length()
        if self.chance(3):
            attributes["lineweight"] = self.random.choice([-3, -2, -1, 0, 5, 13, 25, 50, 100, 211])
        if self.chance(8):
            attributes["invisible"] = 1
        if self.chance(6) and self.document.dxfversion >= "AC1018":
            attributes["true_color"] = self.whole(0, 0xFFFFFF)
        if self.chance(6) and self.document.dxfversion >= "AC1018":
            attributes["transparency"] = 0x02000000 | self.whole(0, 255)
        if thickness and self.chance(3):
            attributes["thickness"] = self.real()
        if extrusion:
            attributes["extrusion"] = self.normal()
        return attributes

    def more(self, entity):
        """Extended data, an extension dictionary."""
        if self.chance(6):
            entity.set_xdata("SURVEY", [(1000, self.line_of_text()[:200]), (1002, "{"), (1040, self.real()),
                                        (1070, self.whole(-32768, 32767)), (1071, self.whole(-2**31, 2**31 - 1)),
                                        (1010, self.point()), (1005, self.layer_handle), (1002, "}")])
        if self.chance(10):
            record = entity.new_extension_dict().add_xrecord("MORE") if hasattr(
                entity.new_extension_dict(), "add_xrecord") and not entity.has_extension_dict else None
            if record is None and entity.has_extension_dict:
                record = self.document.objects.add_xrecord(entity.get_extension_dict().dictionary.dxf.handle)
                entity.get_extension_dict().dictionary["MORE"] = record
            record.reset([(1, "text"), (10, self.point()), (40, self.real()), (70, 7), (90, -5), (280, 1), (330, self.layer_handle)])
        return entity

    # ---- tables ----

    def tables(self):
        doc = self.document
        self.layers = ["0"]
        self.linetypes = ["BYLAYER", "BYBLOCK", "CONTINUOUS"]
        doc.appids.new("SURVEY")
        for i in range(self.whole(1, 4)):
            name = f"LINES{i}"
            dashes = [self.random.choice([0.5, -0.25, 0.0]) for _ in range(self.whole(1, 6) * 2)]
            doc.linetypes.new(name, {"description": f"lines {i} __ . __", "length": sum(map(abs, dashes)),
                                     }).setup_pattern([sum(map(abs, dashes))] + dashes)
            self.linetypes.append(name)
        for i in range(self.whole(1, 5)):
            name = ["ROOMS", "Walls 2", "A-$0$B", "doors", "\u015aciany" if doc.dxfversion >= "AC1021" else "sciany"][i]
            layer = doc.layers.new(name, {"color": self.whole(1, 255) * self.random.choice([1, 1, -1]),
                                          "linetype": self.random.choice(self.linetypes[2:]),
                                          "lineweight": self.random.choice([-3, 0, 30, 211]),
                                          "plot": self.whole(0, 1), "flags": self.random.choice([0, 0, 1, 4])})
            self.layers.append(name)
        self.layer_handle = layer.dxf.handle
        self.styles = ["Standard"]
        for i in range(self.whole(1, 3)):
            doc.styles.new(f"STYLE{i}", {"font": "romans.shx", "height": self.random.choice([0.0, 2.5]),
                                         "width": self.random.uniform(0.5, 2), "oblique": self.degrees() % 60,
                                         "generation_flags": self.random.choice([0, 2, 4])})
            self.styles.append(f"STYLE{i}")
        self.dimstyles = ["Standard"]
        for i in range(self.whole(1, 2)):
            doc.dimstyles.new(f"DIM{i}", {"dimtxt": self.length(), "dimasz": self.length(), "dimscale": self.length(),
                                          "dimexe": self.length(), "dimexo": self.length(), "dimdec": self.whole(0, 8),
                                          "dimtad": self.whole(0, 4), "dimclrd": self.whole(0, 256),
                                          "dimlfac": self.length(), "dimpost": "<> mm", "dimtih": 0, "dimtoh": 1})
            self.dimstyles.append(f"DIM{i}")
        doc.ucs.new("UCS1", {"origin": self.point(), "xaxis": (0, 1, 0), "yaxis": (-1, 0, 0)})
        doc.views.new("VIEW1", {"center": self.flat(), "height": self.length(), "width": self.length(),
                                "target": self.point(), "direction": (1, 1, 1), "focal_length": 50.0})
        for name in ("$LTSCALE", "$TEXTSIZE", "$DIMSCALE", "$CELTSCALE"):
            doc.header[name] = self.length()
        doc.header["$INSUNITS"] = self.whole(0, 20)
        doc.header["$PDMODE"] = self.whole(0, 4)

    def blocks(self):
        self.block_names = []
        for i in range(self.whole(1, 3)):
            block = self.document.blocks.new(f"BLOCK{i}", base_point=self.point())
            outer, self.space = self.space, block
            for _ in range(self.whole(1, 6)):
                self.random.choice([self.line, self.circle, self.arc, self.text_line, self.lwpolyline])()
            block.add_attdef(f"TAG{i}", insert=self.point(), text="default", height=2.5, dxfattribs={
                **self.common(), "prompt": "what", "flags": self.random.choice([0, 1, 8])})
            self.space = outer
            self.block_names.append(block.name)

    # ---- entities ----

    def line(self):
        return self.space.add_line(self.point(), self.point(), self.common(True, True))

    def point_entity(self):
        return self.space.add_point(self.point(), {**self.common(True, True), "angle": self.degrees()})

    def circle(self):
        return self.space.add_circle(self.point(), self.length(), self.common(True, True))

    def arc(self):
        return self.space.add_arc(self.point(), self.length(), self.degrees(), self.degrees(),
                                  dxfattribs=self.common(True, True))

    def ellipse(self):
        return self.space.add_ellipse(self.point(), (self.length(), self.length(), 0), self.random.uniform(0.01, 1),
                                      0.0 if self.chance(2) else self.random.uniform(0, 3),
                                      math.tau if self.chance(2) else self.random.uniform(3.1, 6.2),
                                      dxfattribs=self.common())

    def ray(self):
        return self.space.add_ray(self.point(), (0.6, 0.8, 0.0), self.common())

    def xline(self):
        return self.space.add_xline(self.point(), (0.0, 1.0, 0.0), self.common())

    def solid(self):
        z = self.real()
        return self.space.add_solid([(*self.flat(), z) for _ in range(4)], self.common(True, True))

    def trace(self):
        z = self.real()
        return self.space.add_trace([(*self.flat(), z) for _ in range(4)], self.common(True, True))

    def face(self):
        return self.space.add_3dface([self.point() for _ in range(4)], {**self.common(), "invisible": self.whole(0, 15)})

    def lwpolyline(self):
        pline = self.space.add_lwpolyline([], dxfattribs={**self.common(True, True), "flags": self.random.choice([0, 1, 128, 129])})
        kind = self.whole(0, 3)
        pline.set_points([(self.real(), self.real(), self.length() if kind > 1 else 0, self.length() if kind > 1 else 0,
                           self.random.uniform(-2, 2) if kind % 2 else 0) for _ in range(self.whole(2, 30))])
        if kind == 0 and self.chance(2):
            pline.dxf.const_width = self.length()
        if self.chance(3):
            pline.dxf.elevation = self.real()
        return pline

    def polyline2d(self):
        pline = self.space.add_polyline2d([], format="xyseb", dxfattribs={**self.common(True, True), "elevation": (0, 0, self.real())})
        pline.append_formatted_vertices([(*self.flat(), self.length(), self.length(), self.random.uniform(-1, 1))
                                         for _ in range(self.whole(2, 12))], format="xyseb")
        if self.chance(2):
            pline.close(True)
        return pline

    def polyline3d(self):
        return self.space.add_polyline3d([self.point() for _ in range(self.whole(2, 12))], close=self.chance(2),
                                         dxfattribs=self.common())

    def polymesh(self):
        mesh = self.space.add_polymesh((self.whole(2, 5), self.whole(2, 5)), self.common())
        for vertex in mesh.vertices:
            vertex.dxf.location = self.point()
        return mesh

    def polyface(self):
        mesh = self.space.add_polyface(self.common())
        mesh.append_faces([[self.point() for _ in range(4)] for _ in range(self.whole(1, 5))])
        return mesh

    def spline(self):
        kind = self.whole(0, 2)
        points = [self.point() for _ in range(self.whole(4, 12))]
        if kind == 0:
            spline = self.space.add_open_spline(points, degree=self.whole(2, 3), dxfattribs=self.common())
        elif kind == 1:
            spline = self.space.add_rational_spline(points, [self.random.uniform(0.1, 5) for _ in points],
                                                    degree=3, dxfattribs=self.common())
        else:
            spline = self.space.add_spline(points, dxfattribs=self.common())
            spline.dxf.start_tangent = (1, 0, 0)
            spline.dxf.end_tangent = (0, 1, 0)
        return spline

    def text_line(self):
        text = self.space.add_text(self.line_of_text(), dxfattribs={
            **self.common(True, True), "height": self.length(), "rotation": self.degrees(), "width": self.random.uniform(0.1, 3),
            "oblique": self.degrees() % 80, "style": self.random.choice(self.styles), "insert": self.point(),
            "text_generation_flag": self.random.choice([0, 2, 4, 6])})
        if self.chance(2):
            text.dxf.halign = self.whole(0, 5)
            text.dxf.valign = 0 if text.dxf.halign in (3, 5) else self.whole(0, 3)
            text.dxf.align_point = (*self.flat(), text.dxf.insert.z)
        return text

    def mtext(self):
        return self.space.add_mtext(self.text(), {**self.common(False, True), "insert": self.point(), "char_height": self.length(),
                                                  "width": self.length(), "attachment_point": self.whole(1, 9),
                                                  "flow_direction": self.random.choice([1, 3, 5]),
                                                  "style": self.random.choice(self.styles),
                                                  "line_spacing_factor": self.random.uniform(0.3, 4),
                                                  "line_spacing_style": self.whole(1, 2)})

    def insert(self):
        attributes = {**self.common(False, True), "xscale": self.real() or 1.0, "yscale": self.real() or 1.0,
                      "zscale": self.real() or 1.0, "rotation": self.degrees()}
        if self.chance(3):
            attributes.update(xscale=2.0, yscale=2.0, zscale=2.0)
        if self.chance(4):
            attributes.update(row_count=self.whole(1, 4), column_count=self.whole(2, 4), row_spacing=self.length(),
                              column_spacing=self.length())
        insert = self.space.add_blockref(self.random.choice(self.block_names), self.point(), attributes)
        for i in range(self.whole(0, 2)):
            insert.add_attrib(f"TAG{i}", self.line_of_text(), self.point(), {**self.common(), "height": self.length(),
                                                                             "rotation": self.degrees()})
        return insert

    def hatch(self):
        hatch = self.space.add_hatch(color=self.whole(1, 255), dxfattribs={**self.common(False, True)})
        hatch.dxf.elevation = (0, 0, self.real())
        hatch.dxf.associative = 0
        center = self.point()
        for _ in range(self.whole(1, 3)):
            if self.chance(2):
                hatch.paths.add_polyline_path([(*self.near(center)[:2], self.random.uniform(-1, 1) if self.chance(3) else 0)
                                               for _ in range(self.whole(3, 9))], is_closed=True)
            else:
                edges = hatch.paths.add_edge_path()
                edges.add_line(self.near(center)[:2], self.near(center)[:2])
                edges.add_arc(self.near(center)[:2], self.length(), 10, 200, ccw=self.chance(2))
                edges.add_ellipse(self.near(center)[:2], (self.length(), self.length()), self.random.uniform(0.1, 1), 20, 150,
                                  ccw=self.chance(2))
                spline = edges.add_spline(control_points=[self.near(center)[:2] for _ in range(4)], degree=3,
                                          knot_values=[0, 0, 0, 0, 1, 1, 1, 1])
                if self.document.dxfversion >= "AC1024":
                    # Readers disagree whether tangents follow when there are no points the curve goes through.
                    spline.fit_points = [self.near(center)[:2] for _ in range(3)]
                    spline.start_tangent = spline.end_tangent = (1, 0)
        kind = self.whole(0, 2)
        if kind == 1:
            hatch.set_pattern_fill("ANSI31", scale=self.length(), angle=self.degrees())
        elif kind == 2 and self.document.dxfversion >= "AC1018":
            hatch.set_gradient((10, 20, 30), (200, 210, 220), rotation=self.degrees(), centered=self.whole(0, 1),
                               name=self.random.choice(["LINEAR", "CYLINDER", "SPHERICAL"]))
        if self.chance(3):
            hatch.set_seed_points([self.near(center)[:2]])
        hatch.dxf.hatch_style = self.whole(0, 2)
        return hatch

    def mline(self):
        return self.space.add_mline([self.near((0, 0)) for _ in range(self.whole(3, 6))], close=self.chance(2),
                                    dxfattribs={**self.common(), "scale_factor": self.length(), "justification": self.whole(0, 2)})

    def leader(self):
        return self.space.add_leader([self.point() for _ in range(self.whole(2, 5))],
                                     dimstyle=self.random.choice(self.dimstyles),
                                     dxfattribs={**self.common(), "has_arrowhead": self.whole(0, 1)})

    def tolerance(self):
        return self.space.new_entity("TOLERANCE", {**self.common(False, True), "dimstyle": self.random.choice(self.dimstyles),
                                                   "insert": self.point(), "content": "{\\Fgdt;j}%%v{\\Fgdt;n}0.1%%v%%v%%v%%v",
                                                   "x_axis_vector": (1, 0, 0)})

    def shape(self):
        return self.space.add_shape("BOX", self.point(), self.length(), {**self.common(True, True), "rotation": self.degrees()})

    def dimension(self):
        center = self.point()
        style = {"dimstyle": self.random.choice(self.dimstyles), "dxfattribs": self.common()}
        p, q, r, s = (self.near(center)[:2] for _ in range(4))
        kind = self.whole(0, 6)
        if kind == 0:
            made = self.space.add_linear_dim(base=p, p1=q, p2=r, angle=self.degrees(), **style)
        elif kind == 1:
            made = self.space.add_aligned_dim(p1=p, p2=q, distance=self.length(), **style)
        elif kind == 2:
            made = self.space.add_radius_dim(center=p, radius=self.length(), angle=self.degrees(), **style)
        elif kind == 3:
            made = self.space.add_diameter_dim(center=p, radius=self.length(), angle=self.degrees(), **style)
        elif kind == 4:
            made = self.space.add_angular_dim_2l(base=p, line1=(q, r), line2=(s, self.near(center)[:2]), **style)
        elif kind == 5:
            made = self.space.add_angular_dim_3p(base=p, center=q, p1=r, p2=s, **style)
        else:
            made = self.space.add_ordinate_dim(feature_location=p, offset=(5, 7), dtype=self.whole(0, 1), **style)
        made.render()
        return made.dimension

    def image(self):
        definition = self.document.add_image_def("photo.png", (self.whole(1, 4000), self.whole(1, 4000)))
        return self.space.add_image(definition, self.point(), (self.length(), self.length()), self.degrees(), self.common())

    def wipeout(self):
        center = self.point()
        return self.space.add_wipeout([self.near(center)[:2] for _ in range(self.whole(3, 7))], self.common())

    def underlay(self):
        kind = self.random.choice(["pdf", "dwf", "dgn"])
        definition = self.document.add_underlay_def(f"plan.{kind}", kind, "1")
        return self.space.add_underlay(definition, self.point(), scale=(1, 1, 1), rotation=self.degrees(), dxfattribs=self.common())

    def mesh(self):
        mesh = self.space.add_mesh(self.common())
        with mesh.edit_data() as data:
            data.vertices = [self.point() for _ in range(8)]
            data.faces = [(0, 1, 2, 3), (4, 5, 6, 7), (0, 1, 5, 4)]
        return mesh

    def viewport(self):
        sheet = self.document.layout("Layout1")
        return sheet.add_viewport(center=self.flat(), size=(self.length(), self.length()), view_center_point=self.flat(),
                                  view_height=self.length(), dxfattribs={"layer": self.random.choice(self.layers)})

    def paper_line(self):
        return self.document.layout("Layout1").add_line(self.point(), self.point(), self.common())

    def group(self):
        lines = [self.line() for _ in range(2)]
        group = self.document.groups.new(f"GROUP{self.whole(0, 10**9)}", "a group", 1)
        group.extend(lines)
        return None

    def record(self):
        record = self.document.rootdict.add_xrecord(f"RECORD{self.whole(0, 10**9)}")
        record.reset([(1, self.line_of_text()), (10, self.point()), (40, self.real()), (70, self.whole(-9, 9)),
                      (90, self.whole(-99999, 99999)), (290, 1), (330, self.layer_handle), (310, b"\x01\x02\xff")])
        return None

    def run(self, count, simple):
        self.tables()
        self.blocks()
        kinds = [self.line, self.point_entity, self.circle, self.arc, self.ellipse, self.text_line, self.mtext, self.lwpolyline,
                 self.polyline3d, self.solid, self.face, self.ray] if simple else [self.line, self.point_entity, self.circle, self.arc, self.ellipse, self.ray, self.xline, self.solid, self.trace,
                 self.face, self.lwpolyline, self.polyline2d, self.polyline3d, self.polymesh, self.polyface, self.spline,
                 self.text_line, self.mtext, self.insert, self.hatch, self.mline, self.leader, self.tolerance, self.dimension,
                 self.image, self.wipeout, self.underlay, self.mesh, self.viewport, self.paper_line, self.group, self.record]
        for _ in range(count):
            kind = self.random.choice(kinds)
            if kind == self.mesh and self.document.dxfversion < "AC1024":
                continue
            entity = kind()
            if entity is not None:
                self.more(entity)
        return self.document


def make(version, seed, path, count=40, simple=False):
    """Writes one drawing in DXF. `simple`: of the classes that every reader knows."""
    Maker(version, seed).run(count, simple).saveas(path)
