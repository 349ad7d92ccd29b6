// The parts of a file that is written, before they are put into the container of the version.
#pragma once

#include <string>
#include <vector>

#include "host/dwg/file/objectmap.h"
#include "host/dwg/file/plan.h"

namespace gc::dwg {

struct FileContents {
  int version = 0;
  int codePageNumber = 30;
  uint64_t handseed = 0;
  std::vector<uint8_t> header;
  std::vector<uint8_t> classes;
  std::vector<MapEntry> map;         // of the records that are written
  std::vector<uint8_t> data;         // from R2013 on: what is too large for records; empty for none
  uint64_t viewportTable = 0;        // AC1015: the handle of the (empty) list of viewport headers
  std::vector<uint64_t> pointedOut;  // handles the second header repeats
};

// All but the records and their map.
FileContents makeContents(RecordContext& context);

// Appends the records of all objects to the bytes and fills the map with their places among them.
void appendRecords(RecordContext& context, const WritePlan& plan, FileContents& contents, std::vector<uint8_t>& bytes);

// A whole file.
std::vector<uint8_t> buildR2000(RecordContext& context, const WritePlan& plan, FileContents& contents);
std::vector<uint8_t> buildR2004(RecordContext& context, const WritePlan& plan, FileContents& contents);

// Sections that hold no objects: those the drawing came with where they fit the version, else usual ones.
std::vector<uint8_t> previewSection(const RecordContext& context, uint64_t address);
std::vector<uint8_t> summarySection(const RecordContext& context);
std::vector<uint8_t> auxiliarySection(const RecordContext& context, const FileContents& contents);
std::vector<uint8_t> freeSpaceSection(const RecordContext& context, const FileContents& contents, uint32_t objectsAt);
std::vector<uint8_t> templateSection(const RecordContext& context);

}  // namespace gc::dwg
