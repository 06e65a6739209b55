// The control channel between a parent process and a worker: one 16-byte link record.
#pragma once

#include <cstdint>

#include "LinkManager.h"

namespace Dorva {

// The record, little-endian: stop flag (byte 0), successful completion (byte 1), completion state
// (signed 32-bit at 4) and progress (double at 8). The parent creates the link and hands its number
// to the worker ("-linkid"); either side may read or write any field. Each setter changes its own
// field only, by compare-and-swap, so that two processes setting different fields at once lose
// nothing. Getters leave their argument alone on failure. The manager must be started.
class GeneralConLink {
  public:
    // Parent: creates the link with a zeroed record and an empty key.
    explicit GeneralConLink(LinkManager::Result& result);
    // Worker: attaches to the parent's link by number.
    GeneralConLink(std::uint32_t linkId, LinkManager::Result& result);
    // Detaches, if a link is held.
    ~GeneralConLink();
    GeneralConLink(const GeneralConLink&) = delete;
    GeneralConLink& operator=(const GeneralConLink&) = delete;

    // The link's number, all ones when none is held.
    std::uint32_t GetLinkId() const { return m_linkId; }

    LinkManager::Result SetStop(bool blnStop);
    LinkManager::Result GetStop(bool& blnStop);
    LinkManager::Result SetSuccessfulCompletion(bool blnSuccess);
    LinkManager::Result GetSuccessfulCompletion(bool& blnSuccess);
    LinkManager::Result SetCompletionState(std::int32_t intState);
    LinkManager::Result GetCompletionState(std::int32_t& intState);
    LinkManager::Result SetProgress(double progress);
    LinkManager::Result GetProgress(double& progress);

    static constexpr std::uint64_t s_recordSize = 16;

  private:
    // Reads the record and copies size bytes from offset into value.
    LinkManager::Result GetField(std::size_t offset, std::size_t size, void* value);
    // Writes size bytes from value at offset, retrying until no other change came between.
    LinkManager::Result SetField(std::size_t offset, std::size_t size, const void* value);
    // One byte of the record as a flag: 1 set, 0 clear.
    LinkManager::Result SetFlag(std::size_t offset, bool blnValue);
    LinkManager::Result GetFlag(std::size_t offset, bool& blnValue);

    std::uint32_t m_linkId;
};

}  // namespace Dorva
