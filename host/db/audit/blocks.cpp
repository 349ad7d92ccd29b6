#include <unordered_map>
#include <vector>

#include "db/blockreference.h"
#include "host/db/audit/auditor.h"
#include "host/rx/view.h"

namespace {

// A walk through the references of blocks, depth first, without recursion: chains may be as long as the file is.
class Walk {
 public:
  explicit Walk(GcDbAuditor& auditor) : m_auditor(auditor) {}

  void from(GcDbBlockTableRecord& first) {
    if (m_states[&first] != State::New) return;
    enter(first);
    while (!m_steps.empty()) {
      Step& step = m_steps.back();
      const GcDbObjectIdArray& entities = step.block->entities();
      if (step.next == entities.length()) {
        m_states[step.block] = State::Done;
        m_steps.pop_back();
        continue;
      }
      if (auto* reference = gcdbLive<GcDbBlockReference>(entities[step.next++])) follow(*reference);
    }
  }

 private:
  enum class State : uint8_t { New, Open, Done };
  struct Step {
    GcDbBlockTableRecord* block;
    int next;
  };

  void enter(GcDbBlockTableRecord& block) {
    m_states[&block] = State::Open;
    m_steps.push_back({&block, 0});
  }

  void follow(GcDbBlockReference& reference) {
    auto* block = gcdbLive<GcDbBlockTableRecord>(reference.blockTableRecord());
    if (block == nullptr) return;
    const State state = m_states[block];
    if (state == State::New) enter(*block);
    if (state != State::Open) return;
    if (m_auditor.found(GcDbDefect::BlockInItself, &reference, toUtf8(view(block->getName()))))
      reference.objectId().stub()->erased = true;
  }

  GcDbAuditor& m_auditor;
  std::unordered_map<const GcDbBlockTableRecord*, State> m_states;
  std::vector<Step> m_steps;
};

}  // namespace

void gcdbAuditBlocks(GcDbAuditor& auditor) {
  Walk walk(auditor);
  auditor.forEach([&](GcDbObject& object) {
    if (auto* block = GcDbBlockTableRecord::cast(&object)) walk.from(*block);
  });
}
