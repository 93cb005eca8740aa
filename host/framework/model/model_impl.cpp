#include "framework/model/model_impl.h"

#include "base/log/log.h"

namespace framework {

ModelImpl::~ModelImpl() = default;

void ModelImpl::UnInit() { hub_.Clear(); }

void ModelImpl::Subscribe(uint32_t event_id, uint64_t subscriber, std::shared_ptr<EventHandler> handler) {
  hub_.Subscribe(event_id, subscriber, std::move(handler));
}

void ModelImpl::SubscribeWithLocation(uint32_t event_id, uint64_t subscriber, std::shared_ptr<EventHandler> handler,
                                      char const* location) {
  TXLOG_VERBOSE << "subscribe model=" << type_ << " event=" << event_id << " at " << (location ? location : "");
  hub_.Subscribe(event_id, subscriber, std::move(handler));
}

void ModelImpl::Unsubscribe(uint32_t event_id, uint64_t subscriber) { hub_.Unsubscribe(event_id, subscriber); }

void ModelImpl::Unsubscribe(uint64_t subscriber) { hub_.UnsubscribeAll(subscriber); }

void ModelImpl::SubscribePriority(uint32_t event_id, int priority, uint64_t subscriber,
                                  std::shared_ptr<PriorityEventHandler> handler) {
  hub_.SubscribePriority(event_id, priority, subscriber, std::move(handler));
}

void ModelImpl::UnsubscribePriority(uint32_t event_id, uint64_t subscriber) {
  hub_.UnsubscribePriority(event_id, subscriber);
}

void ModelImpl::UnsubscribePriority(uint64_t subscriber) { hub_.UnsubscribeAllPriority(subscriber); }

bool ModelImpl::Invoke(uint32_t method, Variant const* params, Variant* result) {
  auto handler = methods_.Find(method);
  return handler && (*handler)(params, result);
}

void ModelImpl::OnMethod(uint32_t method, MethodHandler handler) { methods_.Set(method, std::move(handler)); }

std::vector<uint32_t> ModelImpl::Methods() const { return methods_.Ids(); }

bool ModelImpl::P2PCall(uint32_t method, uint64_t, Variant const* params, Variant* result) {
  return Invoke(method, params, result);
}

std::future<Variant> ModelImpl::AsyncCall(uint32_t method, Variant const* params) {
  std::promise<Variant> promise;
  Variant result;
  Invoke(method, params, &result);
  promise.set_value(std::move(result));
  return promise.get_future();
}

bool ModelImpl::FireEvent(uint32_t event_id, Variant const* payload) { return hub_.Fire(event_id, payload); }

BaseServiceImpl::~BaseServiceImpl() = default;

void BaseServiceImpl::Subscribe(uint32_t event_id, uint64_t subscriber, std::shared_ptr<EventHandler> handler) {
  hub_.Subscribe(event_id, subscriber, std::move(handler));
}

void BaseServiceImpl::Unsubscribe(uint32_t event_id, uint64_t subscriber) { hub_.Unsubscribe(event_id, subscriber); }

void BaseServiceImpl::Unsubscribe(uint64_t subscriber) { hub_.UnsubscribeAll(subscriber); }

void BaseServiceImpl::SubscribePriority(uint32_t event_id, int priority, uint64_t subscriber,
                                        std::shared_ptr<PriorityEventHandler> handler) {
  hub_.SubscribePriority(event_id, priority, subscriber, std::move(handler));
}

void BaseServiceImpl::UnsubscribePriority(uint32_t event_id, uint64_t subscriber) {
  hub_.UnsubscribePriority(event_id, subscriber);
}

void BaseServiceImpl::UnsubscribePriority(uint64_t subscriber) { hub_.UnsubscribeAllPriority(subscriber); }

bool BaseServiceImpl::FireEvent(uint32_t event_id, Variant const* payload) { return hub_.Fire(event_id, payload); }

}  // namespace framework
