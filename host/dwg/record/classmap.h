// Object types of records: the format's fixed ones and those a file numbers in its class section.
#pragma once

#include <unordered_map>
#include <vector>

#include "host/rx/view.h"
#include "rx/rxclass.h"

struct GcDbZombieData;

namespace gc::dwg {

inline constexpr uint32_t kFirstFileClass = 500;
inline constexpr uint32_t kProxyEntity = 0x1F2;
inline constexpr uint32_t kProxyObject = 0x1F3;

struct BoundTable;

struct TypeInfo {
  GcText dxfName;                       // group 0 of the type
  GcRxClass* rxClass = nullptr;         // null: not loaded, or nothing the database knows
  const BoundTable* packing = nullptr;  // of the class, when it has one
  bool isMade = false;                  // the class makes objects that are entities as the type says, or are none
  bool isTable = false;                 // the class is one of symbol tables
  bool filesItself = false;             // the class has no description
  bool isEntity = false;
  bool isKnown = false;  // false: a number nobody describes

  // Whether the fields of a record of this type can be read.
  [[nodiscard]] bool isRead() const { return isTable || packing != nullptr || filesItself; }
};

class ClassMap {
 public:
  // Classes of the file in the order of their numbers, which begin at 500.
  struct FileClass {
    uint32_t number = 0;
    GcText dxfName;
    GcText className;
    GcText appName;
    bool isEntity = false;
    bool wasZombie = false;
    int32_t proxyFlags = 0;
    int32_t instanceCount = 0;
    int32_t dwgVersion = 0;
    int32_t maintenanceVersion = 0;
  };

  void add(FileClass fileClass);
  [[nodiscard]] const std::vector<FileClass>& fileClasses() const { return m_fileClasses; }
  [[nodiscard]] std::vector<FileClass>& fileClasses() { return m_fileClasses; }
  [[nodiscard]] const FileClass* fileClass(uint32_t number) const;
  [[nodiscard]] FileClass* findByDxfName(GcView name);  // letter case does not count
  // The number of a zombie's own class: its fixed type, or that of the file's class of its DXF name; 0 for none.
  [[nodiscard]] uint32_t numberFor(const GcDbZombieData& data);

  // What is known of a type. Looked up once: classes are neither loaded nor added while records are read.
  [[nodiscard]] const TypeInfo& typeOf(uint32_t number) const;

  // The fixed type of a class by its run-time name; 0 when it has none.
  static uint32_t fixedTypeOf(GcView className);
  // The run-time class name of a fixed type, null when there is none.
  static const char* fixedClassName(uint32_t number);
  static bool isFixedEntity(uint32_t number);

 private:
  [[nodiscard]] TypeInfo lookUp(uint32_t number) const;

  std::vector<FileClass> m_fileClasses;
  std::unordered_map<uint32_t, size_t> m_byNumber;  // places; of several of a number or a name the first counts
  std::unordered_multimap<uint64_t, size_t> m_byName;
  mutable std::unordered_map<uint32_t, TypeInfo> m_types;
};

}  // namespace gc::dwg
