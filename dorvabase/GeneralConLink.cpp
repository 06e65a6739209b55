// The control channel between a parent process and a worker: one 16-byte link record.
#include "GeneralConLink.h"

#include <cstring>
#include <string>

namespace Dorva {

namespace {

constexpr std::uint32_t kNoLink = 0xFFFFFFFFu;
constexpr std::size_t kStopOffset = 0;
constexpr std::size_t kSuccessOffset = 1;
constexpr std::size_t kStateOffset = 4;
constexpr std::size_t kProgressOffset = 8;

}  // namespace

// A worker reads the stop flag from its first moment, so the record starts as zeros.
GeneralConLink::GeneralConLink(LinkManager::Result& result) : m_linkId(kNoLink) {
    char record[s_recordSize] = {};
    result = LinkManager::CreateLink(s_recordSize, record, std::string(), m_linkId);
    if (result != LinkManager::SUCCESS) m_linkId = kNoLink;
}

GeneralConLink::GeneralConLink(std::uint32_t linkId, LinkManager::Result& result)
    : m_linkId(linkId) {
    char record[s_recordSize];
    std::string strKey;
    result = LinkManager::AttachToLink(m_linkId, strKey, s_recordSize, record);
    if (result != LinkManager::SUCCESS) m_linkId = kNoLink;
}

GeneralConLink::~GeneralConLink() {
    if (m_linkId != kNoLink) LinkManager::DetachFromLink(m_linkId);
}

LinkManager::Result GeneralConLink::GetField(std::size_t offset, std::size_t size, void* value) {
    char record[s_recordSize];
    const LinkManager::Result result = LinkManager::GetLinkData(m_linkId, s_recordSize, record);
    if (result == LinkManager::SUCCESS) std::memcpy(value, record + offset, size);
    return result;
}

LinkManager::Result GeneralConLink::SetField(std::size_t offset, std::size_t size,
                                             const void* value) {
    char current[s_recordSize];
    LinkManager::Result result = LinkManager::GetLinkData(m_linkId, s_recordSize, current);
    if (result != LinkManager::SUCCESS) return result;
    char changed[s_recordSize];
    do {
        std::memcpy(changed, current, s_recordSize);
        std::memcpy(changed + offset, value, size);
        result = LinkManager::SetLinkDataIfUnchanged(m_linkId, s_recordSize, changed, current);
    } while (result == LinkManager::DATA_CHANGED);
    return result;
}

LinkManager::Result GeneralConLink::SetFlag(std::size_t offset, bool blnValue) {
    const unsigned char flag = blnValue ? 1 : 0;
    return SetField(offset, 1, &flag);
}

LinkManager::Result GeneralConLink::GetFlag(std::size_t offset, bool& blnValue) {
    unsigned char flag = 0;
    const LinkManager::Result result = GetField(offset, 1, &flag);
    if (result == LinkManager::SUCCESS) blnValue = flag != 0;
    return result;
}

LinkManager::Result GeneralConLink::SetStop(bool blnStop) {
    return SetFlag(kStopOffset, blnStop);
}

LinkManager::Result GeneralConLink::GetStop(bool& blnStop) {
    return GetFlag(kStopOffset, blnStop);
}

LinkManager::Result GeneralConLink::SetSuccessfulCompletion(bool blnSuccess) {
    return SetFlag(kSuccessOffset, blnSuccess);
}

LinkManager::Result GeneralConLink::GetSuccessfulCompletion(bool& blnSuccess) {
    return GetFlag(kSuccessOffset, blnSuccess);
}

// The integer and the double are stored in the host's order, which is little-endian on every
// machine this runs on.
LinkManager::Result GeneralConLink::SetCompletionState(std::int32_t intState) {
    return SetField(kStateOffset, sizeof intState, &intState);
}

LinkManager::Result GeneralConLink::GetCompletionState(std::int32_t& intState) {
    return GetField(kStateOffset, sizeof intState, &intState);
}

LinkManager::Result GeneralConLink::SetProgress(double progress) {
    return SetField(kProgressOffset, sizeof progress, &progress);
}

LinkManager::Result GeneralConLink::GetProgress(double& progress) {
    return GetField(kProgressOffset, sizeof progress, &progress);
}

}  // namespace Dorva
