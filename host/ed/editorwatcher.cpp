#include "host/ed/editorwatcher.h"

#include <algorithm>

namespace ed {

void EditorWatchers::add(EditorWatcher* watcher) {
  if (std::find(m_watchers.begin(), m_watchers.end(), watcher) == m_watchers.end()) m_watchers.push_back(watcher);
}

void EditorWatchers::remove(EditorWatcher* watcher) { std::erase(m_watchers, watcher); }

// The subject is copied: what a watcher does may end the life of the text it was given.
void EditorWatchers::tellAll(Happening what, GcView subject) const {
  const GcText kept(subject);
  const std::vector<EditorWatcher*> watchers = m_watchers;
  for (EditorWatcher* watcher : watchers)
    if (std::find(m_watchers.begin(), m_watchers.end(), watcher) != m_watchers.end()) watcher->happened(what, kept);
}

}  // namespace ed
