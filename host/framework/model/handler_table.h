#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace framework {

// Handlers by number: the actions a view model answers, the methods a model
// answers. The table is the dispatch, so listing it lists all there is.
template <typename Signature>
class HandlerTable {
 public:
  using Handler = std::function<Signature>;

  // Makes `handler` the one for `id`, replacing an earlier one; an empty
  // handler takes the id out.
  void Set(uint32_t id, Handler handler) {
    if (!handler) {
      handlers_.erase(id);
      return;
    }
    handlers_[id] = std::make_shared<Handler const>(std::move(handler));
  }

  // The handler for `id`, kept alive for the call even if it replaces
  // itself; null when there is none.
  std::shared_ptr<Handler const> Find(uint32_t id) const {
    auto it = handlers_.find(id);
    return it == handlers_.end() ? nullptr : it->second;
  }

  // Every id with a handler, ascending.
  std::vector<uint32_t> Ids() const {
    std::vector<uint32_t> ids;
    ids.reserve(handlers_.size());
    for (auto const& entry : handlers_) ids.push_back(entry.first);
    return ids;
  }

 private:
  std::map<uint32_t, std::shared_ptr<Handler const>> handlers_;
};

}  // namespace framework
