// The link manager's slot and heartbeat: starting up and shutting down, and the thread that
// stamps the slot and the attached links.
#include "LinkManager.h"

#include <cerrno>
#include <cstring>
#include <iostream>

#include "LinkLayout.h"
#include "PortableSleep.h"

namespace Dorva {

using namespace LinkLayout;

void* start_check_thread(void*) {
    LinkManager::CheckThread();
    return nullptr;
}

bool LinkManager::InitializeCheckThreadMutex() {
    return pthread_mutex_init(&m_checkThreadMutex, nullptr) == 0;
}

void LinkManager::DestroyCheckThreadMutex() {
    pthread_mutex_destroy(&m_checkThreadMutex);
}

bool LinkManager::StartCheckThread() {
    return pthread_create(&m_checkThread, nullptr, start_check_thread, nullptr) == 0;
}

void LinkManager::StopCheckThread() {
    pthread_join(m_checkThread, nullptr);
}

// The heartbeat: one consistency check every m_checkFrequency sleeps.
void LinkManager::CheckThread() {
    unsigned int counter = 0;
    while (m_check) {
        ++counter;
        PortableSleep(m_checkSleepTime);
        if (counter < m_checkFrequency) continue;
        counter = 0;
        if (!m_started) continue;
        if (TakeControl() != SUCCESS) {
            std::cout << "WARNING: LinkManager could not take control of shared memory to perform "
                         "consistency check."
                      << std::endl;
            continue;
        }
        ConsistencyCheck();
        ReleaseControl();
    }
}

LinkManager::Result LinkManager::Startup() {
    if (m_started || m_shutdown) return ALREADY_STARTED;
    if (!InitializeCheckThreadMutex()) return MUTEX_INIT_FAILED;
    if (!OpenSemaphoreA()) {
        std::cerr << "CreateSemaphore failed: " << errno << std::endl;
        DestroyCheckThreadMutex();
        return SHARED_MEMORY_OPEN_FAILED;
    }
    const Result result = TakeControl();
    if (result != SUCCESS) {
        CloseSemaphore();
        DestroyCheckThreadMutex();
        return result;
    }
    bool existed = false;
    if (!MapSharedMemory(existed)) {
        ReleaseControl();
        CloseSemaphore();
        DestroyCheckThreadMutex();
        return SHARED_MEMORY_MAP_FAILED;
    }
    m_check = true;
    if (!StartCheckThread()) {
        m_check = false;
        UnmapSharedMemory();
        ReleaseControl();
        CloseSemaphore();
        DestroyCheckThreadMutex();
        return CHECK_THREAD_FAILED;
    }
    if (ShouldInitializeSharedMemory(existed)) {
        InitializeManagerData();
    } else {
        ConsistencyCheck();
    }
    std::int64_t* stamps = ManagerStamps();
    for (unsigned int slot = 0; slot < m_nManagerSlots; ++slot) {
        if (stamps[slot] != 0) continue;
        m_slotIndex = slot;
        stamps[slot] = Now();
        ReleaseControl();
        m_started = true;
        return SUCCESS;
    }
    // The check thread stays, idle: it does nothing while the manager isn't started.
    UnmapSharedMemory();
    ReleaseControl();
    CloseSemaphore();
    DestroyCheckThreadMutex();
    return TOO_MANY_MANAGERS;
}

void LinkManager::Shutdown() {
    if (!m_started) return;
    const std::set<unsigned int> links = m_attachedLinks;
    for (unsigned int id : links) DetachFromLink(id);
    m_shutdown = true;
    m_started = false;
    m_check = false;
    StopCheckThread();
    if (TakeControl() == SUCCESS) {
        if (m_slotIndex < m_nManagerSlots) {
            ManagerStamps()[m_slotIndex] = 0;
            m_slotIndex = 0xFFFFFFFFu;
        }
        UnmapSharedMemory();
        ReleaseControl();
    }
    CloseSemaphore();
    DestroyCheckThreadMutex();
}

LinkManager::Result LinkManager::GetManagerDebuInfo(std::vector<ManagerDebugInfo>& info) {
    if (!m_started) return NOT_STARTED;
    std::int64_t stamps[m_nManagerSlots];
    const Result result = TakeControl();
    if (result != SUCCESS) return result;
    std::memcpy(stamps, ManagerStamps(), sizeof stamps);
    ReleaseControl();
    info.clear();
    for (std::int64_t stamp : stamps) info.push_back({stamp != 0});
    return SUCCESS;
}

}  // namespace Dorva
