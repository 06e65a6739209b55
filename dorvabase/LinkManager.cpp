// The shared-memory link between cooperating processes: its result codes and their texts.
#include "LinkManager.h"

namespace Dorva {

std::string LinkManager::GetResultString(Result result) {
    // The two blanks in the text of ALREADY_STARTED are what the front end shows; keep them.
    static const char* const texts[] = {"Success",
                                        "Manager has already  been started",
                                        "Couldn't initialize mutex",
                                        "Couldn't open shared memory",
                                        "Couldn't map shared memory",
                                        "Couldn't start consistency check thread",
                                        "Too many managers",
                                        "Manager has not been started",
                                        "Data is too big",
                                        "Key is too long",
                                        "Key not found",
                                        "No free links",
                                        "Invalid link ID",
                                        "Already attached",
                                        "Not attached",
                                        "Unallocated link ID",
                                        "Incorrect size",
                                        "Too many attached",
                                        "Data has changed",
                                        "Failed to take control of shared memory"};
    if (result < SUCCESS || result > TAKE_CONTROL_FAILED) return "Unknown";
    return texts[result - SUCCESS];
}

}  // namespace Dorva
