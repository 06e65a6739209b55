// The shared-memory link between cooperating processes of one user: a manager per process, peers
// that watch each other, and numbered fixed-size records under a cross-process lock.
#include "LinkManager.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <iostream>

#include "GetUsername.h"
#include "PortableSleep.h"

namespace Dorva {

namespace {

// The region's layout, shared with the front end.
constexpr std::size_t kManagerTableSize = 400;
constexpr std::size_t kBlockSize = 4616;
constexpr std::size_t kSizeOffset = 1;
constexpr std::size_t kStampOffset = 8;
constexpr std::size_t kKeyOffset = 16;
constexpr std::size_t kDataOffset = 516;

// A stamp is healthy from 0.1 s in the future (written a moment after this process read the
// clock) to 30 s in the past; anything else belongs to a dead process.
bool IsHealthy(std::int64_t now, std::int64_t stamp) {
    const double difference = static_cast<double>(now - stamp);
    return difference >= -0.1 && difference <= 30.0;
}

std::int64_t Now() {
    return static_cast<std::int64_t>(std::time(nullptr));
}

unsigned int AttachCount(const unsigned char* block) {
    return block[0];
}

// The data size is unaligned and little-endian, whatever the host.
std::uint64_t DataSize(const unsigned char* block) {
    return block[kSizeOffset] | (static_cast<unsigned int>(block[kSizeOffset + 1]) << 8);
}

void SetDataSize(unsigned char* block, std::uint64_t size) {
    block[kSizeOffset] = static_cast<unsigned char>(size & 0xFF);
    block[kSizeOffset + 1] = static_cast<unsigned char>((size >> 8) & 0xFF);
}

std::int64_t Stamp(const unsigned char* block) {
    std::int64_t stamp;
    std::memcpy(&stamp, block + kStampOffset, sizeof stamp);
    return stamp;
}

void SetStamp(unsigned char* block, std::int64_t stamp) {
    std::memcpy(block + kStampOffset, &stamp, sizeof stamp);
}

const char* Key(const unsigned char* block) {
    return reinterpret_cast<const char*>(block + kKeyOffset);
}

// Writes the crash warning for the first clean-up of a consistency check only.
void ReportCleanUp(bool& blnReported, double difference) {
    if (blnReported) return;
    blnReported = true;
    std::cout << "WARNING:  A communicating process seems to have crashed.  Cleaning up. ("
              << difference << ")" << std::endl;
}

}  // namespace

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

void* start_check_thread(void*) {
    LinkManager::CheckThread();
    return nullptr;
}

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

// A region that no live manager stamps is a leftover of dead processes, links included.
bool LinkManager::ShouldInitializeSharedMemory(bool existed) {
    if (!existed) return true;
    const std::int64_t now = Now();
    const std::int64_t* stamps = ManagerStamps();
    for (unsigned int slot = 0; slot < m_nManagerSlots; ++slot) {
        if (stamps[slot] != 0 && IsHealthy(now, stamps[slot])) return false;
    }
    return true;
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

void LinkManager::ConsistencyCheck() {
    const std::int64_t now = Now();
    std::int64_t* stamps = ManagerStamps();
    if (m_slotIndex < m_nManagerSlots) stamps[m_slotIndex] = now;
    for (unsigned int id : m_attachedLinks) SetStamp(Block(id), now);

    bool blnReported = false;
    for (unsigned int slot = 0; slot < m_nManagerSlots; ++slot) {
        if (slot == m_slotIndex || stamps[slot] == 0 || IsHealthy(now, stamps[slot])) continue;
        ReportCleanUp(blnReported, static_cast<double>(now - stamps[slot]));
        stamps[slot] = 0;
    }
    // A link dies only when none of its users stamps it any more; its count goes at once.
    for (unsigned int id = 0; id < m_nBlocks; ++id) {
        unsigned char* block = Block(id);
        if (AttachCount(block) == 0 || m_attachedLinks.count(id) != 0) continue;
        if (IsHealthy(now, Stamp(block))) continue;
        ReportCleanUp(blnReported, static_cast<double>(now - Stamp(block)));
        block[0] = 0;
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

LinkManager::Result LinkManager::CreateLink(std::uint64_t size, char* data, const std::string& key,
                                            unsigned int& id) {
    if (!m_started) return NOT_STARTED;
    if (size > m_dataSize) return DATA_TOO_BIG;
    if (key.size() >= m_maxKeyLength) return KEY_TOO_LONG;
    char buffer[m_dataSize];
    if (size > 0) std::memcpy(buffer, data, size);
    const Result result = TakeControl();
    if (result != SUCCESS) return result;
    for (unsigned int candidate = 0; candidate < m_nBlocks; ++candidate) {
        unsigned char* block = Block(candidate);
        if (AttachCount(block) != 0) continue;
        InitializeBlock(block);
        block[0] = 1;
        SetDataSize(block, size);
        SetStamp(block, Now());
        std::memcpy(block + kKeyOffset, key.c_str(), key.size() + 1);
        if (size > 0) std::memcpy(block + kDataOffset, buffer, size);
        id = candidate;
        m_attachedLinks.insert(candidate);
        ReleaseControl();
        return SUCCESS;
    }
    ReleaseControl();
    return NO_FREE_LINKS;
}

LinkManager::Result LinkManager::JoinLink(unsigned int id, std::uint64_t size, char* buffer) {
    unsigned char* block = Block(id);
    if (m_attachedLinks.count(id) != 0) return ALREADY_ATTACHED;
    if (DataSize(block) != size) return INCORRECT_SIZE;
    if (AttachCount(block) >= m_maxLinkAttachments) return TOO_MANY_ATTACHED;
    ++block[0];
    m_attachedLinks.insert(id);
    if (size > 0) std::memcpy(buffer, block + kDataOffset, size);
    return SUCCESS;
}

// The attached-set is read under control too, so that a process may attach and detach from
// several threads; the checks keep their order all the same.
LinkManager::Result LinkManager::AttachToLink(unsigned int id, std::string& key, std::uint64_t size,
                                              char* data) {
    if (!m_started) return NOT_STARTED;
    if (id >= m_nBlocks) return INVALID_LINK_ID;
    Result result = TakeControl();
    if (result != SUCCESS) return result;
    unsigned char* block = Block(id);
    char keyBuffer[m_maxKeyLength];
    char buffer[m_dataSize];
    if (m_attachedLinks.count(id) != 0) {
        result = ALREADY_ATTACHED;
    } else if (size > m_dataSize) {
        result = DATA_TOO_BIG;
    } else if (AttachCount(block) == 0) {
        result = UNALLOCATED_LINK_ID;
    } else if ((result = JoinLink(id, size, buffer)) == SUCCESS) {
        std::memcpy(keyBuffer, block + kKeyOffset, m_maxKeyLength);
        keyBuffer[m_maxKeyLength - 1] = '\0';
    }
    ReleaseControl();
    if (result != SUCCESS) return result;
    key = keyBuffer;
    if (size > 0) std::memcpy(data, buffer, size);
    return SUCCESS;
}

LinkManager::Result LinkManager::AttachToLink(const std::string& key, unsigned int& id,
                                              std::uint64_t size, char* data) {
    if (!m_started) return NOT_STARTED;
    if (size > m_dataSize) return DATA_TOO_BIG;
    Result result = TakeControl();
    if (result != SUCCESS) return result;
    char buffer[m_dataSize];
    result = KEY_NOT_FOUND;
    for (unsigned int candidate = 0; candidate < m_nBlocks; ++candidate) {
        unsigned char* block = Block(candidate);
        if (AttachCount(block) == 0 || std::strcmp(Key(block), key.c_str()) != 0) continue;
        id = candidate;
        result = JoinLink(candidate, size, buffer);
        break;
    }
    ReleaseControl();
    if (result == SUCCESS && size > 0) std::memcpy(data, buffer, size);
    return result;
}

LinkManager::Result LinkManager::DetachFromLink(unsigned int id) {
    if (!m_started) return NOT_STARTED;
    if (id >= m_nBlocks) return INVALID_LINK_ID;
    Result result = TakeControl();
    if (result != SUCCESS) return result;
    unsigned char* block = Block(id);
    if (m_attachedLinks.count(id) == 0) {
        result = NOT_ATTACHED;
    } else if (AttachCount(block) == 0) {
        result = UNALLOCATED_LINK_ID;
    } else {
        --block[0];
        m_attachedLinks.erase(id);
    }
    ReleaseControl();
    return result;
}

LinkManager::Result LinkManager::TakeLinkForData(unsigned int id, std::uint64_t size, bool write) {
    if (!m_started) return NOT_STARTED;
    if (id >= m_nBlocks) return INVALID_LINK_ID;
    Result result = TakeControl();
    if (result != SUCCESS) return result;
    const unsigned char* block = Block(id);
    if (m_attachedLinks.count(id) == 0) {
        result = NOT_ATTACHED;
    } else if (write && size > m_dataSize) {
        result = DATA_TOO_BIG;
    } else if (AttachCount(block) == 0) {
        result = UNALLOCATED_LINK_ID;
    } else if (DataSize(block) != size) {
        result = INCORRECT_SIZE;
    }
    if (result != SUCCESS) ReleaseControl();
    return result;
}

LinkManager::Result LinkManager::GetLinkData(unsigned int id, std::uint64_t size, char* data) {
    char buffer[m_dataSize];
    const Result result = TakeLinkForData(id, size, false);
    if (result != SUCCESS) return result;
    if (size > 0) std::memcpy(buffer, Block(id) + kDataOffset, size);
    ReleaseControl();
    if (size > 0) std::memcpy(data, buffer, size);
    return SUCCESS;
}

LinkManager::Result LinkManager::SetLinkData(unsigned int id, std::uint64_t size,
                                             const char* data) {
    char buffer[m_dataSize];
    if (size > 0 && size <= m_dataSize) std::memcpy(buffer, data, size);
    const Result result = TakeLinkForData(id, size, true);
    if (result != SUCCESS) return result;
    if (size > 0) std::memcpy(Block(id) + kDataOffset, buffer, size);
    ReleaseControl();
    return SUCCESS;
}

LinkManager::Result LinkManager::SetLinkDataIfUnchanged(unsigned int id, std::uint64_t size,
                                                        const char* newData, char* expected) {
    char newBuffer[m_dataSize];
    char expectedBuffer[m_dataSize];
    if (size > 0 && size <= m_dataSize) {
        std::memcpy(newBuffer, newData, size);
        std::memcpy(expectedBuffer, expected, size);
    }
    Result result = TakeLinkForData(id, size, true);
    if (result != SUCCESS) return result;
    unsigned char* data = Block(id) + kDataOffset;
    if (size == 0 || std::memcmp(data, expectedBuffer, size) == 0) {
        if (size > 0) std::memcpy(data, newBuffer, size);
    } else {
        std::memcpy(expectedBuffer, data, size);
        result = DATA_CHANGED;
    }
    ReleaseControl();
    if (result == DATA_CHANGED) std::memcpy(expected, expectedBuffer, size);
    return result;
}

std::int32_t LinkManager::GetNumAttachedManagers() {
    if (m_sharedMemory == nullptr) return 0;
    const volatile std::int64_t* stamps = ManagerStamps();
    std::int32_t count = 0;
    for (unsigned int slot = 0; slot < m_nManagerSlots; ++slot) count += stamps[slot] != 0;
    return count;
}

LinkManager::Result LinkManager::GetLinkDebugInfo(std::vector<LinkDebugInfo>& info) {
    if (!m_started) return NOT_STARTED;
    // Staged outside the lock: key, size and count of every block.
    std::vector<unsigned char> heads(m_nBlocks * kDataOffset);
    const Result result = TakeControl();
    if (result != SUCCESS) return result;
    for (unsigned int id = 0; id < m_nBlocks; ++id) {
        std::memcpy(&heads[id * kDataOffset], Block(id), kDataOffset);
    }
    ReleaseControl();
    info.clear();
    for (unsigned int id = 0; id < m_nBlocks; ++id) {
        unsigned char* head = &heads[id * kDataOffset];
        head[kDataOffset - 1] = '\0';
        info.push_back({static_cast<std::int32_t>(AttachCount(head)),
                        static_cast<std::int64_t>(DataSize(head)), Key(head)});
    }
    return SUCCESS;
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

void LinkManager::PrintAccessInfo(bool, bool) {
    std::cout << "No access output for semPath and shmPath on Windows" << std::endl;
}

}  // namespace Dorva
