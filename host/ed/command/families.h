// The commands, one list per family.
#pragma once

#include "host/ed/command/command.h"

namespace ed {

std::span<const Command> lineCommands();
std::span<const Command> curveCommands();
std::span<const Command> polylineCommands();
std::span<const Command> textCommands();
std::span<const Command> blockCommands();
std::span<const Command> editCommands();
std::span<const Command> transformCommands();
std::span<const Command> propertyCommands();
std::span<const Command> layerCommands();
std::span<const Command> viewCommands();
std::span<const Command> spaceCommands();
std::span<const Command> ucsCommands();
std::span<const Command> undoCommands();
std::span<const Command> dimensionCommands();
std::span<const Command> hatchCommands();
std::span<const Command> polylineEditCommands();
std::span<const Command> modifyCommands();
std::span<const Command> arrayCommands();
std::span<const Command> drawingFileCommands();
std::span<const Command> recordCommands();
std::span<const Command> inquiryCommands();
std::span<const Command> annotationCommands();
std::span<const Command> layerToolCommands();
std::span<const Command> attributeCommands();
std::span<const Command> groupCommands();
std::span<const Command> reshapeCommands();
std::span<const Command> settingCommands();
std::span<const Command> clipboardCommands();
std::span<const Command> cornerCommands();
std::span<const Command> spaceTransformCommands();
std::span<const Command> outsideCommands();
std::span<const Command> linetypeCommands();
std::span<const Command> plotCommands();
std::span<const Command> furtherCurveCommands();
std::span<const Command> multilineCommands();
std::span<const Command> revisionCloudCommands();
std::span<const Command> textMergeCommands();
std::span<const Command> changeSpaceCommands();
std::span<const Command> scaleListCommands();
std::span<const Command> calculatorCommands();
std::span<const Command> regionCommands();
std::span<const Command> xrefCommands();
std::span<const Command> clipCommands();
std::span<const Command> textStyleCommands();
std::span<const Command> fieldCommands();

// The variable LASTPOINT.
GcGePoint3d lastPoint(Editor& editor);

}  // namespace ed
