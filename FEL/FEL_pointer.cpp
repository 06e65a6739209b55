// Reference counts of shared library objects and the owning pointer's hand-over.
#include "FEL_pointer.h"

#include <iostream>

bool FEL_reference_counted_object::reference_count_debug = false;

FEL_reference_counted_object::FEL_reference_counted_object(const std::string& name)
    : reference_count(0), name(name) {}

FEL_reference_counted_object::FEL_reference_counted_object(
    const FEL_reference_counted_object& other)
    : reference_count(0), name(other.name) {}

FEL_reference_counted_object& FEL_reference_counted_object::operator=(
    const FEL_reference_counted_object& other) {
    name = other.name;
    return *this;
}

FEL_reference_counted_object::~FEL_reference_counted_object() = default;

void FEL_reference_counted_object::report_count(const char* what) const {
    std::cerr << what << " " << name << ": " << reference_count << "\n";
}

void FEL_reference_counted_object::increment_reference() {
    reference_count = reference_count + 1;
    if (reference_count_debug) report_count("increment_reference");
}

int FEL_reference_counted_object::decrement_reference() {
    reference_count = reference_count - 1;
    if (reference_count_debug) report_count("decrement_reference");
    return reference_count;
}

std::ostream& operator<<(std::ostream& out, const FEL_reference_counted_object& object) {
    return out << object.get_name();
}

void FEL_mutex_reference_counted_object::increment_reference() {
    FEL_reference_counted_object::increment_reference();
}

int FEL_mutex_reference_counted_object::decrement_reference() {
    return FEL_reference_counted_object::decrement_reference();
}

void FEL_pointer_base::set(FEL_reference_counted_object* p) {
    if (p != nullptr) p->increment_reference();
    if (object != nullptr && object->decrement_reference() == 0) delete object;
    object = p;
}
