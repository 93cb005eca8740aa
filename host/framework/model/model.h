#pragma once

#include <cstdint>
#include <functional>
#include <future>
#include <memory>

#include "base/variant/variant.h"

namespace framework {

using EventHandler = std::function<void(Variant const*)>;
// The bool is the stop flag: a handler that sets it ends the delivery, and no
// later handler (priority or plain) sees the event.
using PriorityEventHandler = std::function<void(Variant const*, bool&)>;

// Subscribers are identified by their address.
inline uint64_t SubscriberId(void const* subscriber) { return reinterpret_cast<uint64_t>(subscriber); }

// The interface of every model, the host's and a module's own. Methods and
// events are numbers; every payload is a Variant.
class Model {
 public:
  virtual ~Model() = default;

  virtual void Init() {}
  virtual void UnInit() {}

  virtual void Subscribe(uint32_t event_id, uint64_t subscriber, std::shared_ptr<EventHandler> handler) = 0;
  virtual void SubscribeWithLocation(uint32_t event_id, uint64_t subscriber, std::shared_ptr<EventHandler> handler,
                                     char const* location) = 0;
  virtual void Unsubscribe(uint32_t event_id, uint64_t subscriber) = 0;
  // All events of one subscriber, plain and priority.
  virtual void Unsubscribe(uint64_t subscriber) = 0;

  // The generic synchronous call: true when the model knows the method.
  virtual bool Invoke(uint32_t method, Variant const* params, Variant* result) = 0;
  virtual bool P2PCall(uint32_t method, uint64_t target, Variant const* params, Variant* result) = 0;
  // Runs Invoke and hands back its result; the call itself completes before
  // it returns (all models live on the main thread).
  virtual std::future<Variant> AsyncCall(uint32_t method, Variant const* params) = 0;

  virtual int type() const = 0;
};

// A model whose events can be taken ahead of plain subscribers. Higher
// priorities run first; equal priorities in the order of subscription.
class PriorityModel : public Model {
 public:
  virtual void SubscribePriority(uint32_t event_id, int priority, uint64_t subscriber,
                                 std::shared_ptr<PriorityEventHandler> handler) = 0;
  virtual void UnsubscribePriority(uint32_t event_id, uint64_t subscriber) = 0;
  virtual void UnsubscribePriority(uint64_t subscriber) = 0;
};

using ModelPtr = std::shared_ptr<Model>;

}  // namespace framework
