// Objects that own themselves, directly or through others, as damaged files have them.
#pragma once

#include <unordered_map>

#include "host/db/core/store.h"

class GcDbOwnerCycles {
 public:
  // Follows the owners of an object up to one whose way up is known, so that all objects together cost about as many
  // steps as there are objects. Calls found(object) for each object of a cycle that is met; the cycle was broken when
  // that returns true.
  template <class Found>
  void search(const GcDbStub* from, const Found& found) {
    const GcDbStub* owner = ownerOf(from);
    if (owner == m_known) return;
    m_known = owner;
    if (owner == nullptr || m_seenIn.contains(owner)) return;
    ++m_search;
    for (const GcDbStub* at = from; at != nullptr; at = ownerOf(at)) {
      const auto [seen, isNew] = m_seenIn.emplace(at, m_search);
      if (isNew) continue;
      if (seen->second == m_search) tell(at, found);
      break;
    }
  }

 private:
  static const GcDbStub* ownerOf(const GcDbStub* of) {
    const GcDbObjectId owner = of->object->ownerId();
    return owner.isValid() ? owner.stub() : nullptr;
  }

  template <class Found>
  static void tell(const GcDbStub* first, const Found& found) {
    const GcDbStub* at = first;
    do {
      const GcDbStub* next = ownerOf(at);
      if (found(*at->object)) return;
      at = next;
    } while (at != first);
  }

  std::unordered_map<const GcDbStub*, int> m_seenIn;  // the search that first met an object
  int m_search = 0;
  const GcDbStub* m_known = nullptr;  // the owner of the last object: neighbours mostly share one
};
