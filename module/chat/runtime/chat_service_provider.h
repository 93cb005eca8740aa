#pragma once

#include "framework/module/providers.h"

namespace chat {

class ChatServiceProvider : public framework::ServiceProviderBaseImpl {
 public:
  // Makes the UI assistant service at once, so that it answers from the start.
  void Init() override;
  void UnInit() override;

 protected:
  framework::ServicePtr Build(int id) override;
};

}  // namespace chat
