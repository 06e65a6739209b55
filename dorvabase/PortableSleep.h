// Sleeping for whole seconds, the same call on every platform.
#pragma once

namespace Dorva {

// Suspends the calling thread for the given number of seconds.
void PortableSleep(unsigned int seconds);

}  // namespace Dorva
