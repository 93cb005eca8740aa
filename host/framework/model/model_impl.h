#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "framework/model/event_hub.h"
#include "framework/model/handler_table.h"
#include "framework/model/model.h"

namespace framework {

// Base of concrete models. A subclass overrides Init and UnInit (calling the
// base), registers a handler per method in its constructor (OnMethod), and
// announces changes with FireEvent.
class ModelImpl : public PriorityModel {
 public:
  explicit ModelImpl(int type = 0) : type_(type) {}
  ~ModelImpl() override;

  void Init() override {}
  // Drops every subscription.
  void UnInit() override;

  void Subscribe(uint32_t event_id, uint64_t subscriber, std::shared_ptr<EventHandler> handler) override;
  void SubscribeWithLocation(uint32_t event_id, uint64_t subscriber, std::shared_ptr<EventHandler> handler,
                             char const* location) override;
  void Unsubscribe(uint32_t event_id, uint64_t subscriber) override;
  void Unsubscribe(uint64_t subscriber) override;
  void SubscribePriority(uint32_t event_id, int priority, uint64_t subscriber,
                         std::shared_ptr<PriorityEventHandler> handler) override;
  void UnsubscribePriority(uint32_t event_id, uint64_t subscriber) override;
  void UnsubscribePriority(uint64_t subscriber) override;

  // Runs the handler registered for `method`; false for a method without one.
  bool Invoke(uint32_t method, Variant const* params, Variant* result) override;
  // The methods this model has handlers for, in ascending order.
  std::vector<uint32_t> Methods() const;
  bool P2PCall(uint32_t method, uint64_t target, Variant const* params, Variant* result) override;
  std::future<Variant> AsyncCall(uint32_t method, Variant const* params) override;

  int type() const override { return type_; }

  // Delivers `payload` to the subscribers of `event_id`; true when a priority
  // handler stopped it.
  bool FireEvent(uint32_t event_id, Variant const* payload);
  bool FireEvent(uint32_t event_id, Variant const& payload) { return FireEvent(event_id, &payload); }

  size_t SubscriberCount(uint32_t event_id) const { return hub_.SubscriberCount(event_id); }
  std::vector<uint32_t> SubscribedEvents() const { return hub_.SubscribedEvents(); }
  bool HasSubscriber(uint64_t subscriber) const { return hub_.HasSubscriber(subscriber); }
  // The last non-empty map fired with `event_id`, or null (EventHub::Sample).
  Variant SamplePayload(uint32_t event_id) const { return hub_.Sample(event_id); }

 protected:
  // `result` may be null: a caller that wants no answer. True when the
  // method was carried out.
  using MethodHandler = HandlerTable<bool(Variant const* params, Variant* result)>::Handler;
  // Makes `handler` the answer to `method`; a later registration replaces
  // an earlier one (a subclass taking over a method of its base).
  void OnMethod(uint32_t method, MethodHandler handler);
  void set_type(int type) { type_ = type; }

 private:
  int type_;
  EventHub hub_;
  HandlerTable<bool(Variant const* params, Variant* result)> methods_;
};

// Base of a module's services: the same call and event surface as a model.
class BaseServiceImpl {
 public:
  virtual ~BaseServiceImpl();
  virtual void Initialize() {}
  virtual void UnInitialize() {}
  virtual bool Invoke(uint32_t method, Variant const* params, Variant* result) { return false; }
  virtual void Subscribe(uint32_t event_id, uint64_t subscriber, std::shared_ptr<EventHandler> handler);
  virtual void Unsubscribe(uint32_t event_id, uint64_t subscriber);
  virtual void Unsubscribe(uint64_t subscriber);
  virtual void SubscribePriority(uint32_t event_id, int priority, uint64_t subscriber,
                                 std::shared_ptr<PriorityEventHandler> handler);
  virtual void UnsubscribePriority(uint32_t event_id, uint64_t subscriber);
  virtual void UnsubscribePriority(uint64_t subscriber);

  bool FireEvent(uint32_t event_id, Variant const* payload);
  size_t SubscriberCount(uint32_t event_id) const { return hub_.SubscriberCount(event_id); }

 private:
  EventHub hub_;
};

using ServicePtr = std::shared_ptr<BaseServiceImpl>;

}  // namespace framework
