// Sleeping for whole seconds, the same call on every platform.
#include "PortableSleep.h"

#include <chrono>
#include <thread>

namespace Dorva {

void PortableSleep(unsigned int seconds) {
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
}

}  // namespace Dorva
