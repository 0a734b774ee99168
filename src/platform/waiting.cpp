#include "platform/waiting.h"

namespace velto::platform {
namespace {

class SilentWait : public Wait {
  public:
    bool Continue(std::optional<WaitProgress> /*progress*/) override { return true; }
};

class SilentWaiting : public WaitingService {
  public:
    std::unique_ptr<Wait> Begin(const WaitRequest& /*request*/) override {
        return std::make_unique<SilentWait>();
    }
};

}  // namespace

std::unique_ptr<WaitingService> MakeSilentWaiting() {
    return std::make_unique<SilentWaiting>();
}

}  // namespace velto::platform
