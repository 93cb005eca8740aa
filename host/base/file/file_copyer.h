#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/threading/looper.h"

namespace base {
namespace file {

class FileCopyer {
 public:
  // Copies `source` to `target` (creating the target's directory, replacing
  // an existing file) on `work_looper`, then calls `done` with the outcome on
  // `reply_looper`. The copy goes through a temporary name beside the target,
  // so a reader never sees half a file.
  static void FileCopy(std::string const& source, std::string const& target, std::function<void(bool)> done,
                       std::shared_ptr<threading::Looper> work_looper,
                       std::shared_ptr<threading::Looper> reply_looper);
};

}  // namespace file
}  // namespace base
