// The link manager's checks: which stamps are alive, the clean-up of dead managers and links, and
// the checks of joining a link and of taking one for its data.
#include "LinkManager.h"

#include <cstring>
#include <iostream>

#include "LinkLayout.h"

namespace Dorva {

using namespace LinkLayout;

namespace {
// Writes the crash warning for the first clean-up of a consistency check only.
void ReportCleanUp(bool& blnReported, double difference) {
    if (blnReported) return;
    blnReported = true;
    std::cout << "WARNING:  A communicating process seems to have crashed.  Cleaning up. ("
              << difference << ")" << std::endl;
}
}  // namespace

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

}  // namespace Dorva
