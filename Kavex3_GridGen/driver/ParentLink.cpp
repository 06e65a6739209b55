// The worker's link to its parent: start-up, the stop check beside the run, and the end of a
// linked run.
#include "driver/ParentLink.h"

#include <pthread.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "CommandLine.h"
#include "PortableSleep.h"
#include "driver/DriverGlobals.h"

std::atomic<bool> g_checkForStop{false};
Dorva::GeneralConLink* g_controllerLink = nullptr;

static pthread_t s_stopCheckThread;
static bool s_blnLinked = false;

bool StartLink() {
    int intLinkId = -1;
    // A "linkid" without a value, or one that isn't a number, counts as not given: no link.
    if (!Dorva::CommandLine::GetArgument("linkid", intLinkId)) return true;
    if (intLinkId < 0) {
        std::cerr << "GRID GEN ERROR:  Valid linkID must be specified" << std::endl;
        return false;
    }
    if (pthread_mutex_init(&g_mutex, nullptr) != 0) {
        std::cerr << "GRID GEN ERROR:  Could not initialize mutex" << std::endl;
        return false;
    }
    Dorva::LinkManager::Result result = Dorva::LinkManager::Startup();
    if (result != Dorva::LinkManager::SUCCESS) {
        std::cerr << "GRID GEN ERROR: Failed to start the link manager: "
                  << Dorva::LinkManager::GetResultString(result);
        pthread_mutex_destroy(&g_mutex);
        return false;
    }
    g_controllerLink = new Dorva::GeneralConLink(static_cast<std::uint32_t>(intLinkId), result);
    if (result != Dorva::LinkManager::SUCCESS) {
        std::cerr << "GRID GEN ERROR: Failed to attach to Con link: "
                  << Dorva::LinkManager::GetResultString(result);
        delete g_controllerLink;
        g_controllerLink = nullptr;
        pthread_mutex_destroy(&g_mutex);
        Dorva::LinkManager::Shutdown();
        return false;
    }
    g_checkForStop = true;
    const int error = pthread_create(&s_stopCheckThread, nullptr, stop_check_thread, nullptr);
    if (error != 0) {
        std::cerr << "GRID GEN ERROR: Failed to start stop check thread: " << std::strerror(error);
        delete g_controllerLink;
        g_controllerLink = nullptr;
        pthread_mutex_destroy(&g_mutex);
        Dorva::LinkManager::Shutdown();
        return false;
    }
    s_blnLinked = true;
    std::atexit(LeaveLink);
    return true;
}

void* stop_check_thread(void*) {
    for (;;) {
        pthread_mutex_lock(&g_mutex);
        if (!g_checkForStop) {
            pthread_mutex_unlock(&g_mutex);
            return nullptr;
        }
        bool blnStop = false;
        if (g_controllerLink != nullptr &&
            g_controllerLink->GetStop(blnStop) == Dorva::LinkManager::SUCCESS && blnStop) {
            g_controllerLink->SetSuccessfulCompletion(true);
            delete g_controllerLink;
            Dorva::LinkManager::Shutdown();
            // The main thread is still inside a stage: exit's static destructors would pull its
            // records away under it. The logs are flushed by hand instead.
            std::cout.flush();
            std::cerr.flush();
            std::fflush(nullptr);
            std::_Exit(0);
        }
        pthread_mutex_unlock(&g_mutex);
        Dorva::PortableSleep(3);
    }
}

// The stop check takes the link manager's semaphore in each look at the link. A process that ends
// while it does so leaves the semaphore taken, and every process of this user then waits on it for
// good; g_mutex keeps the check out of the link from here to the end of the process.
void LeaveLink() {
    if (!s_blnLinked) return;
    s_blnLinked = false;
    pthread_mutex_lock(&g_mutex);
    g_checkForStop = false;
    delete g_controllerLink;
    g_controllerLink = nullptr;
    Dorva::LinkManager::Shutdown();
}

void EndLink(bool blnReportSuccess) {
    if (!s_blnLinked) return;
    s_blnLinked = false;
    g_checkForStop = false;
    pthread_join(s_stopCheckThread, nullptr);
    if (blnReportSuccess) g_controllerLink->SetSuccessfulCompletion(true);
    delete g_controllerLink;
    g_controllerLink = nullptr;
    pthread_mutex_destroy(&g_mutex);
    Dorva::LinkManager::Shutdown();
}
