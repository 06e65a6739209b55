// The link manager's region: the process's statics, the cross-process lock, and mapping and
// clearing the shared memory.
#include "LinkManager.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>

#include "GetUsername.h"
#include "LinkLayout.h"

namespace Dorva {

using namespace LinkLayout;

std::string LinkManager::m_name = "DorvaLM1_" + GetUsername();
std::atomic<bool> LinkManager::m_started{false};
std::atomic<bool> LinkManager::m_shutdown{false};
std::atomic<bool> LinkManager::m_check{false};
std::uint32_t LinkManager::m_slotIndex = 0xFFFFFFFFu;
unsigned char* LinkManager::m_sharedMemory = nullptr;
int LinkManager::m_fd = -1;
sem_t* LinkManager::m_semaphore = SEM_FAILED;
pthread_t LinkManager::m_checkThread;
pthread_mutex_t LinkManager::m_checkThreadMutex;
std::set<unsigned int> LinkManager::m_attachedLinks;

unsigned char* LinkManager::Block(unsigned int id) {
    return m_sharedMemory + kManagerTableSize + id * kBlockSize;
}

std::int64_t* LinkManager::ManagerStamps() {
    return reinterpret_cast<std::int64_t*>(m_sharedMemory);
}

// The mutex first, so that this process's threads queue on it and not on the semaphore.
LinkManager::Result LinkManager::TakeControl() {
    pthread_mutex_lock(&m_checkThreadMutex);
    int rc;
    while ((rc = sem_wait(m_semaphore)) != 0 && errno == EINTR) {
    }
    if (rc != 0) {
        std::cerr << "WaitForSingleObject failed: " << errno << std::endl;
        pthread_mutex_unlock(&m_checkThreadMutex);
        return TAKE_CONTROL_FAILED;
    }
    return SUCCESS;
}

void LinkManager::ReleaseControl() {
    if (sem_post(m_semaphore) != 0) std::cerr << "ReleaseSemaphore failed: " << errno << std::endl;
    pthread_mutex_unlock(&m_checkThreadMutex);
}

// O_CREAT alone creates the semaphore with its count of 1 or opens the existing one, atomically.
bool LinkManager::OpenSemaphoreA() {
    m_semaphore = sem_open(("/" + m_name).c_str(), O_CREAT, 0600, 1);
    return m_semaphore != SEM_FAILED;
}

void LinkManager::CloseSemaphore() {
    if (m_semaphore != SEM_FAILED && sem_close(m_semaphore) != 0) {
        std::cerr << "semaphore CloseHandle failed: " << errno << std::endl;
    }
    m_semaphore = SEM_FAILED;
}

bool LinkManager::MapSharedMemory(bool& existed) {
    const std::string strName = "/" + m_name;
    existed = false;
    m_fd = shm_open(strName.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
    if (m_fd < 0 && errno == EEXIST) {
        existed = true;
        m_fd = shm_open(strName.c_str(), O_RDWR, 0);
    }
    struct stat status;
    // A new object has no size yet; this runs under the semaphore, so no peer maps it meanwhile.
    if (m_fd < 0 || fstat(m_fd, &status) != 0 ||
        (status.st_size < static_cast<off_t>(m_regionSize) &&
         ftruncate(m_fd, static_cast<off_t>(m_regionSize)) != 0)) {
        std::cerr << "CreateFileMapping failed: Error Number: " << errno << std::endl;
        if (m_fd >= 0) close(m_fd);
        m_fd = -1;
        return false;
    }
    void* base = mmap(nullptr, m_regionSize, PROT_READ | PROT_WRITE, MAP_SHARED, m_fd, 0);
    if (base == MAP_FAILED) {
        std::cerr << "MapViewOfFile failed:  Error Number:  " << errno << std::endl;
        if (close(m_fd) != 0)
            std::cerr << "CloseHandle failed: Error Number: " << errno << std::endl;
        m_fd = -1;
        return false;
    }
    m_sharedMemory = static_cast<unsigned char*>(base);
    return true;
}

// The objects themselves stay: a peer may be opening them by name at this moment.
void LinkManager::UnmapSharedMemory() {
    if (m_sharedMemory != nullptr) munmap(m_sharedMemory, m_regionSize);
    if (m_fd >= 0 && close(m_fd) != 0) {
        std::cerr << "CloseHandle failed: Error Number: " << errno << std::endl;
    }
    m_fd = -1;
    m_sharedMemory = nullptr;
}

void LinkManager::InitializeManagerData() {
    std::memset(m_sharedMemory, 0, kManagerTableSize);
    for (unsigned int id = 0; id < m_nBlocks; ++id) InitializeBlock(Block(id));
}

void LinkManager::InitializeBlock(unsigned char* block) {
    block[0] = 0;
    SetDataSize(block, 0);
    SetStamp(block, 0);
    block[kKeyOffset] = '\0';
    std::memset(block + kDataOffset, 0, m_dataSize);
}

std::int32_t LinkManager::GetNumAttachedManagers() {
    if (m_sharedMemory == nullptr) return 0;
    const volatile std::int64_t* stamps = ManagerStamps();
    std::int32_t count = 0;
    for (unsigned int slot = 0; slot < m_nManagerSlots; ++slot) count += stamps[slot] != 0;
    return count;
}

void LinkManager::PrintAccessInfo(bool, bool) {
    std::cout << "No access output for semPath and shmPath on Windows" << std::endl;
}

}  // namespace Dorva
