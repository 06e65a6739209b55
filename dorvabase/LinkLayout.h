// The link region's layout, shared with the front end, and the fields of a link block's head.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>

namespace Dorva {
namespace LinkLayout {

// The region's layout, shared with the front end.
constexpr std::size_t kManagerTableSize = 400;
constexpr std::size_t kBlockSize = 4616;
constexpr std::size_t kSizeOffset = 1;
constexpr std::size_t kStampOffset = 8;
constexpr std::size_t kKeyOffset = 16;
constexpr std::size_t kDataOffset = 516;

// A stamp is healthy from 0.1 s in the future (written a moment after this process read the
// clock) to 30 s in the past; anything else belongs to a dead process.
inline bool IsHealthy(std::int64_t now, std::int64_t stamp) {
    const double difference = static_cast<double>(now - stamp);
    return difference >= -0.1 && difference <= 30.0;
}

inline std::int64_t Now() {
    return static_cast<std::int64_t>(std::time(nullptr));
}

inline unsigned int AttachCount(const unsigned char* block) {
    return block[0];
}

// The data size is unaligned and little-endian, whatever the host.
inline std::uint64_t DataSize(const unsigned char* block) {
    return block[kSizeOffset] | (static_cast<unsigned int>(block[kSizeOffset + 1]) << 8);
}

inline void SetDataSize(unsigned char* block, std::uint64_t size) {
    block[kSizeOffset] = static_cast<unsigned char>(size & 0xFF);
    block[kSizeOffset + 1] = static_cast<unsigned char>((size >> 8) & 0xFF);
}

inline std::int64_t Stamp(const unsigned char* block) {
    std::int64_t stamp;
    std::memcpy(&stamp, block + kStampOffset, sizeof stamp);
    return stamp;
}

inline void SetStamp(unsigned char* block, std::int64_t stamp) {
    std::memcpy(block + kStampOffset, &stamp, sizeof stamp);
}

inline const char* Key(const unsigned char* block) {
    return reinterpret_cast<const char*>(block + kKeyOffset);
}

}  // namespace LinkLayout
}  // namespace Dorva
