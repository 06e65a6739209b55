// Bounded bit set: storage by distance from low, word-wise set algebra, reported faults.
#include "FEL_bitvector.h"

#include <cstring>
#include <iostream>

namespace {

const int bits_in_nibble[16] = {0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4};

int word_count(int low, int high) {
    const int count = (high - low + 32) >> FEL_bitvector::lgBitsPerWord;
    return count > 0 ? count : 0;
}

}  // namespace

FEL_bitvector::FEL_bitvector(int low, int high) : words(nullptr), n_words(0), low(0), high(-1) {
    construct(low, high);
    reset();
}

FEL_bitvector::FEL_bitvector(const FEL_bitvector& other)
    : words(nullptr), n_words(0), low(0), high(-1) {
    construct(other.low, other.high);
    if (n_words > 0) std::memcpy(words, other.words, sizeof(std::uint32_t) * n_words);
}

FEL_bitvector& FEL_bitvector::operator=(const FEL_bitvector& other) {
    if (this != &other) {
        construct(other.low, other.high);
        if (n_words > 0) std::memcpy(words, other.words, sizeof(std::uint32_t) * n_words);
    }
    return *this;
}

FEL_bitvector::~FEL_bitvector() {
    delete[] words;
}

void FEL_bitvector::construct(int new_low, int new_high) {
    delete[] words;
    low = new_low;
    high = new_high;
    n_words = word_count(low, high);
    words = n_words > 0 ? new std::uint32_t[n_words] : nullptr;
}

void FEL_bitvector::reset() {
    if (n_words > 0) std::memset(words, 0, sizeof(std::uint32_t) * n_words);
}

bool FEL_bitvector::in_range(const char* operation, int i) const {
    if (i >= low && i <= high) return true;
    std::cerr << "FEL_bitvector::" << operation << "(" << i << ") outside "
              << "[" << low << "," << high << "]" << std::endl;
    return false;
}

void FEL_bitvector::put(int i) {
    if (!in_range("put", i)) return;
    const int bit = i - low;
    words[bit >> lgBitsPerWord] |= std::uint32_t(1) << (bit & 31);
}

void FEL_bitvector::del(int i) {
    if (!in_range("del", i)) return;
    const int bit = i - low;
    words[bit >> lgBitsPerWord] &= ~(std::uint32_t(1) << (bit & 31));
}

void FEL_bitvector::toggle(int i) {
    if (!in_range("toggle", i)) return;
    const int bit = i - low;
    words[bit >> lgBitsPerWord] ^= std::uint32_t(1) << (bit & 31);
}

bool FEL_bitvector::lookup(int i) const {
    if (!in_range("lookup", i)) return false;
    const int bit = i - low;
    return (words[bit >> lgBitsPerWord] >> (bit & 31)) & 1;
}

int FEL_bitvector::card() const {
    int count = 0;
    for (int w = 0; w < n_words; ++w) {
        for (std::uint32_t word = words[w]; word != 0; word >>= 4)
            count += bits_in_nibble[word & 15];
    }
    return count;
}

void FEL_bitvector::complement() {
    for (int w = 0; w < n_words; ++w) words[w] = ~words[w];
    const int tail = (high - low + 1) & 31;
    if (n_words > 0 && tail != 0) words[n_words - 1] &= (std::uint32_t(1) << tail) - 1;
}

bool FEL_bitvector::same_bounds(const char* operation_text, const FEL_bitvector& other) const {
    if (low == other.low && high == other.high) return true;
    std::cerr << "FEL_bitvector " << operation_text << " mismatched argument" << std::endl;
    return false;
}

FEL_bitvector& FEL_bitvector::operator&=(const FEL_bitvector& other) {
    if (same_bounds("operator& =()", other))
        for (int w = 0; w < n_words; ++w) words[w] &= other.words[w];
    return *this;
}

FEL_bitvector& FEL_bitvector::operator|=(const FEL_bitvector& other) {
    if (same_bounds("operator|=()", other))
        for (int w = 0; w < n_words; ++w) words[w] |= other.words[w];
    return *this;
}

FEL_bitvector& FEL_bitvector::operator-=(const FEL_bitvector& other) {
    if (same_bounds("operator-=()", other))
        for (int w = 0; w < n_words; ++w) words[w] &= ~other.words[w];
    return *this;
}

FEL_bitvector& FEL_bitvector::operator^=(const FEL_bitvector& other) {
    if (same_bounds("operator^=()", other))
        for (int w = 0; w < n_words; ++w) words[w] ^= other.words[w];
    return *this;
}

bool FEL_bitvector::operator==(const FEL_bitvector& other) const {
    if (!same_bounds("operator==()", other)) return false;
    for (int w = 0; w < n_words; ++w)
        if (words[w] != other.words[w]) return false;
    return true;
}

bool FEL_bitvector::operator<=(const FEL_bitvector& other) const {
    if (!same_bounds("operator<=()", other)) return false;
    for (int w = 0; w < n_words; ++w)
        if ((words[w] & ~other.words[w]) != 0) return false;
    return true;
}

bool FEL_bitvector::operator>=(const FEL_bitvector& other) const {
    if (!same_bounds("operator>=()", other)) return false;
    for (int w = 0; w < n_words; ++w)
        if ((other.words[w] & ~words[w]) != 0) return false;
    return true;
}
