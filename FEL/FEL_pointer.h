// Intrusive reference counting: the root of shared library objects and the pointer that owns them.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

class FEL_reference_counted_object {
  public:
    // When set, every change of a count is written to the error stream with the object's name.
    static bool reference_count_debug;

    explicit FEL_reference_counted_object(const std::string& name = "");
    // A copy starts with no holders of its own.
    FEL_reference_counted_object(const FEL_reference_counted_object& other);
    FEL_reference_counted_object& operator=(const FEL_reference_counted_object& other);

    virtual bool is_mesh() const { return false; }
    virtual bool is_field() const { return false; }
    virtual ~FEL_reference_counted_object();
    virtual void increment_reference();
    // Returns the count after the decrement.
    virtual int decrement_reference();

    const std::string& get_name() const { return name; }
    void set_name(const std::string& new_name) { name = new_name; }
    int get_reference_count() const { return reference_count; }

  protected:
    void report_count(const char* what) const;

    std::int32_t reference_count;
    std::string name;
};

// Writes the object's name and nothing else.
std::ostream& operator<<(std::ostream& out, const FEL_reference_counted_object& object);

// Named for a lock, but its counting is the same plain read, add, write as the base: meshes and
// their pointers stay on one thread.
class FEL_mutex_reference_counted_object : public FEL_reference_counted_object {
  public:
    explicit FEL_mutex_reference_counted_object(const std::string& name = "")
        : FEL_reference_counted_object(name) {}
    void increment_reference() override;
    int decrement_reference() override;
};

class FEL_pointer_base {
  public:
    bool null() const { return object == nullptr; }

  protected:
    FEL_pointer_base() : object(nullptr) {}
    ~FEL_pointer_base() { set(nullptr); }
    // Takes a reference on p before releasing the held object, so that assigning a pointer to
    // itself is safe; destroys the released object when its count reaches 0.
    void set(FEL_reference_counted_object* p);

    FEL_reference_counted_object* object;
};

template <class T>
class FEL_pointer : public FEL_pointer_base {
  public:
    FEL_pointer() = default;
    FEL_pointer(T* p) { set(p); }
    FEL_pointer(const FEL_pointer& other) : FEL_pointer_base() { set(other.object); }
    // From a pointer to a derived class.
    template <class U>
    FEL_pointer(const FEL_pointer<U>& other) {
        T* p = other.get();
        set(p);
    }
    FEL_pointer& operator=(const FEL_pointer& other) {
        set(other.object);
        return *this;
    }
    FEL_pointer& operator=(T* p) {
        set(p);
        return *this;
    }

    T* get() const { return static_cast<T*>(object); }
    T* operator->() const { return get(); }
    T& operator*() const { return *get(); }
    bool operator==(const FEL_pointer& other) const { return object == other.object; }
    bool operator!=(const FEL_pointer& other) const { return object != other.object; }
};
