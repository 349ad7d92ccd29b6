#include "db/zombie.h"

#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/objects/zombiedata.h"

GCDB_DEFINE_CLASS(GcDbZombieObject, "AcDbZombieObject")
GCDB_DEFINE_CLASS(GcDbZombieEntity, "AcDbZombieEntity")

// Rows reach the data through the zombie's pointer; they are filed in memory copies only, files have the groups.
struct GcDbZombieFields {
  template <class Zombie, auto Member>
  static void* at(void* record) {
    return &(static_cast<Zombie*>(record)->m_data->*Member);
  }
  template <class Zombie, auto Member>
  static constexpr GcDbField row(const char* name, Is is) {
    GcDbField made;
    made.code = -1;
    made.kind = gcdescribe::kindOf<typename gcdescribe::MemberOf<decltype(Member)>::Member>();
    made.is = is;
    made.write = Write::Never;
    made.name = name;
    made.at = at<Zombie, Member>;
    return made;
  }
  template <class Zombie, auto Member, Is Meaning>
  static constexpr GcDbField array(const char* name) {
    using Element = gcdescribe::ElementAt<Member>;
    GcDbField made = row<Zombie, Member>(name, Is::Plain);
    made.kind = Kind::Records;
    made.records = &gcdescribe::ArrayOps<Element>::kOps;
    made.rows = gcdescribe::BareRow<Element, -1, Meaning>::kRow;
    made.rowCount = 1;
    return made;
  }
};

#define GC_ZOMBIE_ROWS(Zombie)                                                                          \
  const GcDbField Zombie::kFields[] = {                                                                 \
      GcDbZombieFields::row<Zombie, &GcDbZombieData::dxfName>("dxfName", Is::Plain),                    \
      []() {                                                                                            \
        GcDbField groups = GcDbZombieFields::row<Zombie, &GcDbZombieData::groups>("groups", Is::Plain); \
        groups.write = Write::Always;                                                                   \
        return groups;                                                                                  \
      }(),                                                                                              \
      GcDbZombieFields::row<Zombie, &GcDbZombieData::bits>("bits", Is::Plain),                          \
      GcDbZombieFields::row<Zombie, &GcDbZombieData::bitCount>("bitCount", Is::Plain),                  \
      GcDbZombieFields::array<Zombie, &GcDbZombieData::references, Is::SoftPointer>("references"),      \
      GcDbZombieFields::row<Zombie, &GcDbZombieData::referenceCodes>("referenceCodes", Is::Plain),      \
      GcDbZombieFields::row<Zombie, &GcDbZombieData::version>("version", Is::Plain),                    \
      GcDbZombieFields::row<Zombie, &GcDbZombieData::recordType>("recordType", Is::Plain),              \
  };                                                                                                    \
  GCDB_FIELD_COUNT(Zombie);                                                                             \
  Zombie::Zombie() : m_data(new GcDbZombieData) {}                                                      \
  Zombie::~Zombie() { delete m_data; }

GC_ZOMBIE_ROWS(GcDbZombieObject)
GC_ZOMBIE_ROWS(GcDbZombieEntity)
