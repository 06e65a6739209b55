// The shared-memory links: creating, attaching, detaching, their data and their snapshots. The
// region, the slots and heartbeats, and the checks are in LinkRegion.cpp, LinkSlots.cpp and
// LinkChecks.cpp.
#include "LinkManager.h"

#include <cstring>
#include <iostream>

#include "LinkLayout.h"

namespace Dorva {

using namespace LinkLayout;

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
