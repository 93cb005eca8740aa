#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/timer/tx_timer.h"
#include "framework/meeting/member_provider.h"
#include "sim/models/member_model.h"
#include "sim/models/sim_model.h"

namespace sim {

// Model 638: the member provider, over the member model (508). What it
// answers and sends is told in framework/meeting/member_provider.h. The
// local user is never listed. A webinar's attendees are listed only to those
// who are not attendees themselves, and the waiting room only to a host or
// co-host. Answers come on the host's timers, `latency_ms` after the ask; a
// list longer than `chunk_size` arrives in chunks, one each `latency_ms`.
class MemberProviderModel : public SimModel {
 public:
  static constexpr int kId = talvex_common::utils::memberprovider::kModelId;
  explicit MemberProviderModel(MemberModel& members);
  ~MemberProviderModel() override;

  void set_latency_ms(int ms) { latency_ms_ = ms; }
  void set_chunk_size(int size) { chunk_size_ = size > 0 ? size : 1; }
  // Providers that are active now.
  size_t active_count() const { return activations_.size(); }

 private:
  struct Activation {
    int64_t id = 0;
    std::string search;  // folded to lower case
    size_t attendees_sent = 0;
    std::unique_ptr<talvex_common::utils::timer::TXTimer> timer;
  };
  struct Entry {
    Variant row;
    std::string folded_name;
    int provider = 0;  // 0 in meeting, 1 waiting room, 2 attendee
  };

  bool Activate(Variant const* params, Variant* result);
  bool Search(Variant const* params);
  bool Deactivate(Variant const* params);
  bool SearchAll(Variant const* params);
  void Deliver(int64_t id);
  void Schedule(Activation& activation);
  // The members by provider, refreshed when the member model changed.
  std::vector<Entry> const& Entries();
  Variant Section(int provider, Activation const* activation, std::string const& search, size_t limit,
                  bool* more) const;

  MemberModel& members_;
  int latency_ms_ = 20;
  int chunk_size_ = 2000;
  int64_t next_id_ = 1;
  std::map<int64_t, Activation> activations_;
  std::vector<Entry> entries_;
  bool entries_dirty_ = true;
  std::vector<std::unique_ptr<talvex_common::utils::timer::TXTimer>> one_shots_;
};

}  // namespace sim
