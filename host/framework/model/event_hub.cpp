#include "framework/model/event_hub.h"

#include <algorithm>

namespace framework {

struct EventHub::Entry {
  uint64_t subscriber = 0;
  bool priority = false;
  int level = 0;
  uint64_t order = 0;
  bool active = true;
  std::shared_ptr<EventHandler> handler;
  std::shared_ptr<PriorityEventHandler> priority_handler;
};

EventHub::EventHub() = default;

EventHub::~EventHub() { Clear(); }

void EventHub::Subscribe(uint32_t event_id, uint64_t subscriber, std::shared_ptr<EventHandler> handler) {
  if (!handler) return;
  // A second subscription of the same subscriber replaces the first.
  Unsubscribe(event_id, subscriber);
  auto entry = std::make_shared<Entry>();
  entry->subscriber = subscriber;
  entry->order = next_order_++;
  entry->handler = std::move(handler);
  entries_[event_id].push_back(std::move(entry));
}

void EventHub::SubscribePriority(uint32_t event_id, int priority, uint64_t subscriber,
                                 std::shared_ptr<PriorityEventHandler> handler) {
  if (!handler) return;
  UnsubscribePriority(event_id, subscriber);
  auto entry = std::make_shared<Entry>();
  entry->subscriber = subscriber;
  entry->priority = true;
  entry->level = priority;
  entry->order = next_order_++;
  entry->priority_handler = std::move(handler);
  auto& list = entries_[event_id];
  // Kept sorted: priority entries by level (high first), then plain entries.
  auto pos = std::find_if(list.begin(), list.end(), [&](auto const& e) {
    return !e->priority || e->level < priority;
  });
  list.insert(pos, std::move(entry));
}

namespace {
template <typename Pred>
void RemoveIf(std::vector<std::shared_ptr<EventHub::Entry>>& list, Pred pred) {
  for (auto& e : list) {
    if (pred(*e)) e->active = false;
  }
  list.erase(std::remove_if(list.begin(), list.end(), [](auto const& e) { return !e->active; }), list.end());
}
}  // namespace

void EventHub::Unsubscribe(uint32_t event_id, uint64_t subscriber) {
  auto it = entries_.find(event_id);
  if (it == entries_.end()) return;
  RemoveIf(it->second, [&](Entry const& e) { return !e.priority && e.subscriber == subscriber; });
}

void EventHub::UnsubscribePriority(uint32_t event_id, uint64_t subscriber) {
  auto it = entries_.find(event_id);
  if (it == entries_.end()) return;
  RemoveIf(it->second, [&](Entry const& e) { return e.priority && e.subscriber == subscriber; });
}

void EventHub::UnsubscribeAll(uint64_t subscriber) {
  for (auto& [id, list] : entries_) {
    RemoveIf(list, [&](Entry const& e) { return e.subscriber == subscriber; });
  }
}

void EventHub::UnsubscribeAllPriority(uint64_t subscriber) {
  for (auto& [id, list] : entries_) {
    RemoveIf(list, [&](Entry const& e) { return e.priority && e.subscriber == subscriber; });
  }
}

void EventHub::Clear() {
  for (auto& [id, list] : entries_) {
    for (auto& e : list) e->active = false;
  }
  entries_.clear();
}

bool EventHub::Fire(uint32_t event_id, Variant const* payload) {
  if (payload && payload->IsMap() && !payload->Empty()) samples_[event_id] = *payload;
  auto it = entries_.find(event_id);
  if (it == entries_.end() || it->second.empty()) return false;
  const std::vector<std::shared_ptr<Entry>> snapshot = it->second;
  for (auto const& entry : snapshot) {
    if (!entry->active) continue;
    if (entry->priority) {
      bool stop = false;
      (*entry->priority_handler)(payload, stop);
      if (stop) return true;
    } else {
      (*entry->handler)(payload);
    }
  }
  return false;
}

Variant EventHub::Sample(uint32_t event_id) const {
  auto it = samples_.find(event_id);
  return it == samples_.end() ? Variant() : it->second;
}

std::vector<uint32_t> EventHub::SubscribedEvents() const {
  std::vector<uint32_t> events;
  for (auto const& [id, list] : entries_) {
    if (!list.empty()) events.push_back(id);
  }
  std::sort(events.begin(), events.end());
  return events;
}

size_t EventHub::SubscriberCount(uint32_t event_id) const {
  auto it = entries_.find(event_id);
  return it == entries_.end() ? 0 : it->second.size();
}

bool EventHub::HasSubscriber(uint64_t subscriber) const {
  for (auto const& [id, list] : entries_) {
    for (auto const& e : list) {
      if (e->subscriber == subscriber) return true;
    }
  }
  return false;
}

}  // namespace framework
