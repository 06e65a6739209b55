// The worker's link to its parent: start-up, the stop check beside the run, and the end of a
// linked run.
#pragma once

#include <atomic>

#include "GeneralConLink.h"

// True while stop_check_thread is to go on. Written by the main thread without g_mutex: the join
// that follows orders the rest.
extern std::atomic<bool> g_checkForStop;
// The control link; null when the run has no link.
extern Dorva::GeneralConLink* g_controllerLink;

// Start-up with "-linkid": without it (or without a number) the run has no link and this does
// nothing. Otherwise starts the link manager, attaches to the parent's control link and starts
// stop_check_thread. Returns false, after its "GRID GEN ERROR:" line on stderr and with everything
// undone, when the run must end with status -1.
bool StartLink();

// Looks at the stop flag every 3 seconds under g_mutex. A stop reports successful completion,
// as a finished run does, leaves the link and ends the process at once with status 0, leaving the
// temporary files behind.
void* stop_check_thread(void*);

// End of a linked run: stops and joins stop_check_thread (up to 3 seconds), reports successful
// completion when asked, and takes the link down. Nothing for a run without a link.
void EndLink(bool blnReportSuccess);

// End of a linked run that fails (registered with atexit by StartLink, called before an abort):
// leaves the link without reporting success and ends the stop check for the rest of the process.
// Nothing when the link is already down or the run has none.
void LeaveLink();
