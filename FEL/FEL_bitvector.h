// A set of integers in a closed range [low, high], one bit per member.
#pragma once

#include <cstdint>

// Faults are reported on the error stream and survived: an index outside the range or an operand
// with other bounds leaves the set unchanged, and a mismatched comparison answers false.
class FEL_bitvector {
  public:
    static const int lgBitsPerWord = 5;

    FEL_bitvector() : words(nullptr), n_words(0), low(0), high(-1) {}
    // Allocates and clears every word.
    FEL_bitvector(int low, int high);
    FEL_bitvector(const FEL_bitvector& other);
    FEL_bitvector& operator=(const FEL_bitvector& other);
    ~FEL_bitvector();

    // Sets the bounds and allocates, leaving the words uncleared.
    void construct(int low, int high);
    void reset();
    void put(int i);
    void del(int i);
    void toggle(int i);
    bool lookup(int i) const;
    int card() const;
    // Inverts every word, then clears the bits beyond high in the last word.
    void complement();

    FEL_bitvector& operator&=(const FEL_bitvector& other);
    FEL_bitvector& operator|=(const FEL_bitvector& other);
    FEL_bitvector& operator-=(const FEL_bitvector& other);
    FEL_bitvector& operator^=(const FEL_bitvector& other);
    bool operator==(const FEL_bitvector& other) const;
    // Subset and superset.
    bool operator<=(const FEL_bitvector& other) const;
    bool operator>=(const FEL_bitvector& other) const;

    int get_low() const { return low; }
    int get_high() const { return high; }
    int get_word_count() const { return n_words; }

  private:
    bool in_range(const char* operation, int i) const;
    bool same_bounds(const char* operation_text, const FEL_bitvector& other) const;

    std::uint32_t* words;
    std::int32_t n_words;
    std::int32_t low;
    std::int32_t high;
};
