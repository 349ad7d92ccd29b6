// The rows that single-line text, attribute definitions and attributes have in common, behind the marker AcDbText.
#pragma once

#define GC_TEXT_ROWS(Class)                                                                                       \
  marker("AcDbText"), field<&Class::m_thickness>(39, "thickness", Is::Length, Write::UnlessDefault),              \
      field<&Class::m_position>(10, "position", Is::OcsPoint), field<&Class::m_height>(40, "height", Is::Length), \
      field<&Class::m_text>(1, "text", Is::Plain),                                                                \
      field<&Class::m_rotationRad>(50, "rotation", Is::Angle, Write::FilesUnlessDefault),                         \
      field<&Class::m_widthFactor>(41, "widthFactor", Is::Plain, Write::FilesUnlessDefault).orElse(1),            \
      field<&Class::m_obliqueRad>(51, "oblique", Is::Plain, Write::FilesUnlessDefault),                           \
      field<&Class::m_styleId>(7, "style", Is::TextStyleName, Write::FilesUnlessDefault),                         \
      field<&Class::m_mirror>(71, "mirror", Is::Plain, Write::FilesUnlessDefault),                                \
      field<&Class::m_horizontal>(72, "horizontalMode", Is::Plain, Write::FilesUnlessDefault),                    \
      field<&Class::m_alignment>(11, "alignmentPoint", Is::OcsPoint).inFilesWhen<&Class::hasAlignmentPoint>(),    \
      field<&Class::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault)
