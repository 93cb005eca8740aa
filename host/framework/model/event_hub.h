#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "framework/model/model.h"

namespace framework {

// The subscriber table behind models and services.
//
// Delivery works on a snapshot, so a handler may subscribe or unsubscribe
// anyone (itself included) while an event is being delivered: a subscriber
// removed mid-delivery is not called again, one added mid-delivery sees the
// next event.
class EventHub {
 public:
  EventHub();
  ~EventHub();
  EventHub(EventHub const&) = delete;
  EventHub& operator=(EventHub const&) = delete;

  void Subscribe(uint32_t event_id, uint64_t subscriber, std::shared_ptr<EventHandler> handler);
  void SubscribePriority(uint32_t event_id, int priority, uint64_t subscriber,
                         std::shared_ptr<PriorityEventHandler> handler);
  void Unsubscribe(uint32_t event_id, uint64_t subscriber);
  void UnsubscribePriority(uint32_t event_id, uint64_t subscriber);
  // Every plain and priority subscription of `subscriber`.
  void UnsubscribeAll(uint64_t subscriber);
  void UnsubscribeAllPriority(uint64_t subscriber);
  void Clear();

  // Priority handlers first, then plain ones. Returns true when a priority
  // handler stopped the event. A non-empty map payload becomes the event's
  // sample, followed or not.
  bool Fire(uint32_t event_id, Variant const* payload);
  // The last non-empty map fired with `event_id`, sharing its storage; null
  // when the event never carried one. What a well-formed payload looks like,
  // for diagnostics and tests.
  Variant Sample(uint32_t event_id) const;

  size_t SubscriberCount(uint32_t event_id) const;
  // The events somebody follows now, in ascending order.
  std::vector<uint32_t> SubscribedEvents() const;
  bool HasSubscriber(uint64_t subscriber) const;

  struct Entry;  // opaque

 private:
  std::unordered_map<uint32_t, std::vector<std::shared_ptr<Entry>>> entries_;
  // One value per event id: a copy shares the payload's storage.
  std::unordered_map<uint32_t, Variant> samples_;
  uint64_t next_order_ = 0;
};

}  // namespace framework
