// The shared-memory link between cooperating processes of one user: a manager per process, peers
// that watch each other, and numbered fixed-size records under a cross-process lock.
#pragma once

#include <pthread.h>
#include <semaphore.h>

#include <atomic>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace Dorva {

// Snapshot of one link block.
struct LinkDebugInfo {
    std::int32_t attachCount;
    std::int64_t dataSize;
    std::string key;
};

// Snapshot of one manager slot: true when a process holds it.
struct ManagerDebugInfo {
    bool inUse;
};

// One region of 462,000 bytes, opened as the shared-memory object and the semaphore both named
// "/" + GetRegionName(): 50 manager stamps (signed 64-bit seconds since the epoch, 0 = free slot)
// at offset 0, then 100 link blocks of 4,616 bytes from offset 400. A block holds its attach
// count (1 byte, 0 = free), its data size (2 bytes, unaligned), its stamp at 8, a NUL-terminated
// key of up to 499 characters at 16 and 4096 bytes of data at 516. The front end builds on the same
// layout. Both objects are created for the user only (0600) and never removed: a region that only
// dead processes stamped is cleared by the next Startup.
// All members are static: one manager per process. No operation throws; each answers a Result.
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

    static constexpr unsigned int m_nManagerSlots = 50;
    static constexpr unsigned int m_nBlocks = 100;
    static constexpr unsigned int m_dataSize = 4096;
    static constexpr unsigned int m_maxLinkAttachments = 255;
    static constexpr unsigned int m_maxKeyLength = 500;  // with the terminator
    static constexpr unsigned int m_waitSeconds = 2;
    static constexpr unsigned int m_checkSleepTime = 1;
    static constexpr unsigned int m_checkFrequency = 10;
    static constexpr std::size_t m_regionSize = 462000;

    static unsigned int GetMaxNumLinkManagers() { return m_nManagerSlots; }
    static unsigned int GetMaxNumLinks() { return m_nBlocks; }
    static unsigned int GetMaxLinkDataSize() { return m_dataSize; }
    static unsigned int GetMaxNumLinkAttachments() { return m_maxLinkAttachments; }
    static unsigned int GetMaxKeyLength() { return m_maxKeyLength; }

    // "DorvaLM1_" + the user's name unless SetRegionName changed it.
    static const std::string& GetRegionName() { return m_name; }
    // Gives this process's manager a region of its own name; only before Startup. Test programs
    // use it so that they never share a region with a real run.
    static void SetRegionName(const std::string& name) { m_name = name; }

    // Attaches this process: opens or creates the region and takes a manager slot. A second call,
    // also after Shutdown, gives ALREADY_STARTED.
    static Result Startup();
    // Detaches from every link, frees the slot and unmaps. Final for the process.
    static void Shutdown();

    // Takes the first free block for a record of size bytes (at most 4096) and attaches to it.
    static Result CreateLink(std::uint64_t size, char* data, const std::string& key,
                             unsigned int& id);
    // Attaches by number and copies out the key and the record, which must be of size bytes.
    static Result AttachToLink(unsigned int id, std::string& key, std::uint64_t size, char* data);
    // Attaches to the first link holding key, and gives its number and record.
    static Result AttachToLink(const std::string& key, unsigned int& id, std::uint64_t size,
                               char* data);
    // Undoes one attachment; the last one frees the block.
    static Result DetachFromLink(unsigned int id);

    static Result GetLinkData(unsigned int id, std::uint64_t size, char* data);
    static Result SetLinkData(unsigned int id, std::uint64_t size, const char* data);
    // Writes newData only while the record still equals expected; otherwise copies the record
    // into expected and gives DATA_CHANGED, so that the caller can redo its change.
    static Result SetLinkDataIfUnchanged(unsigned int id, std::uint64_t size, const char* newData,
                                         char* expected);

    // Slots holding a stamp; read without the lock, 0 when not started.
    static std::int32_t GetNumAttachedManagers();
    static Result GetLinkDebugInfo(std::vector<LinkDebugInfo>& info);
    static Result GetManagerDebuInfo(std::vector<ManagerDebugInfo>& info);

    // The text of a result; "Unknown" for a value outside the list.
    static std::string GetResultString(Result result);
    static void PrintAccessInfo(bool semPath, bool shmPath);

  private:
    friend void* start_check_thread(void*);

    static Result TakeControl();
    static void ReleaseControl();
    static bool OpenSemaphoreA();
    static void CloseSemaphore();
    static bool MapSharedMemory(bool& existed);
    static void UnmapSharedMemory();
    static bool ShouldInitializeSharedMemory(bool existed);
    static void InitializeManagerData();
    static void InitializeBlock(unsigned char* block);
    static bool InitializeCheckThreadMutex();
    static void DestroyCheckThreadMutex();
    static bool StartCheckThread();
    static void StopCheckThread();
    static void CheckThread();
    static void ConsistencyCheck();

    static unsigned char* Block(unsigned int id);
    static std::int64_t* ManagerStamps();
    // Common part of the record reads and writes: checks, then takes control. On success the
    // caller holds control and must release it.
    static Result TakeLinkForData(unsigned int id, std::uint64_t size, bool write);
    // Under control: the checks both attachments share, then the attachment and a copy of the data.
    static Result JoinLink(unsigned int id, std::uint64_t size, char* buffer);

    static std::string m_name;
    static std::atomic<bool> m_started;
    static std::atomic<bool> m_shutdown;
    static std::atomic<bool> m_check;
    static std::uint32_t m_slotIndex;
    static unsigned char* m_sharedMemory;
    static int m_fd;
    static sem_t* m_semaphore;
    static pthread_t m_checkThread;
    static pthread_mutex_t m_checkThreadMutex;
    static std::set<unsigned int> m_attachedLinks;
};

}  // namespace Dorva
