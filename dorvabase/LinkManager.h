// The shared-memory link between cooperating processes: its result codes and their texts.
#pragma once

#include <cstdint>
#include <string>

namespace Dorva {

class LinkManager {
  public:
    // Every link operation answers with one of these; 1 is success.
    enum Result : std::uint32_t {
        SUCCESS = 1,
        ALREADY_STARTED = 2,
        MUTEX_INIT_FAILED = 3,
        SHARED_MEMORY_OPEN_FAILED = 4,
        SHARED_MEMORY_MAP_FAILED = 5,
        CHECK_THREAD_FAILED = 6,
        TOO_MANY_MANAGERS = 7,
        NOT_STARTED = 8,
        DATA_TOO_BIG = 9,
        KEY_TOO_LONG = 10,
        KEY_NOT_FOUND = 11,
        NO_FREE_LINKS = 12,
        INVALID_LINK_ID = 13,
        ALREADY_ATTACHED = 14,
        NOT_ATTACHED = 15,
        UNALLOCATED_LINK_ID = 16,
        INCORRECT_SIZE = 17,
        TOO_MANY_ATTACHED = 18,
        DATA_CHANGED = 19,
        TAKE_CONTROL_FAILED = 20,
    };

    // The text of a result; "Unknown" for a value outside the list.
    static std::string GetResultString(Result result);
};

}  // namespace Dorva
