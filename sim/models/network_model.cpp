#include "sim/models/network_model.h"

namespace sim {

NetworkModel::NetworkModel() : SimModel(kId) {
  SetMethod(9, [this](Variant const*, Variant* result) {
    if (result) *result = up_;
    return true;
  });
  SetMethod(10, [this](Variant const*, Variant* result) {
    if (result) *result = auth_state_;
    return true;
  });
}

}  // namespace sim
