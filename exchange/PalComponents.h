#pragma once
// A colour's components. Every space the layer knows has at most four, so they are kept inside the
// colour itself: a palette of 100,000 colours makes no allocation for them. A coder may still hand over
// any count (conversion then refuses it); more than four spill to the heap.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <ostream>
#include <vector>

namespace PAL {

class Components {
public:
    using value_type = double;
    using iterator = double*;
    using const_iterator = const double*;

    Components() = default;
    Components(std::initializer_list<double> values) { assign(values.begin(), values.size()); }
    Components(const double* values, std::size_t count) { assign(values, count); }
    // Implicit, as coders build the list in a vector before the colour exists.
    Components(const std::vector<double>& values) { assign(values.data(), values.size()); }  // NOLINT
    Components(const Components& other) { assign(other.data(), other.size()); }
    Components(Components&& other) noexcept { take(other); }
    Components& operator=(const Components& other) {
        if (this != &other) {
            release();
            assign(other.data(), other.size());
        }
        return *this;
    }
    Components& operator=(Components&& other) noexcept {
        if (this != &other) {
            release();
            take(other);
        }
        return *this;
    }
    ~Components() { release(); }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    double* data() { return spilled() ? storage_.heap : storage_.values; }
    const double* data() const { return spilled() ? storage_.heap : storage_.values; }
    double& operator[](std::size_t i) { return data()[i]; }
    double operator[](std::size_t i) const { return data()[i]; }
    iterator begin() { return data(); }
    iterator end() { return data() + size_; }
    const_iterator begin() const { return data(); }
    const_iterator end() const { return data() + size_; }

    operator std::vector<double>() const { return {begin(), end()}; }  // NOLINT: for the platform colour value

    friend bool operator==(const Components& a, const Components& b) {
        return a.size_ == b.size_ && std::equal(a.begin(), a.end(), b.begin());
    }
    friend bool operator==(const Components& a, const std::vector<double>& b) {
        return a.size_ == b.size() && std::equal(a.begin(), a.end(), b.begin());
    }
    friend std::ostream& operator<<(std::ostream& out, const Components& components) {
        out << "[";
        for (std::size_t i = 0; i < components.size(); ++i) out << (i ? ", " : "") << components[i];
        return out << "]";
    }

private:
    static constexpr std::size_t inlineCapacity = 4;
    bool spilled() const { return size_ > inlineCapacity; }

    void assign(const double* values, std::size_t count) {
        if (count > inlineCapacity) storage_.heap = new double[count];
        size_ = static_cast<std::uint32_t>(count);
        std::copy(values, values + count, data());
    }
    void take(Components& other) {
        storage_ = other.storage_;
        size_ = other.size_;
        other.size_ = 0;
    }
    void release() {
        if (spilled()) delete[] storage_.heap;
        size_ = 0;
    }

    union Storage {
        double values[inlineCapacity];
        double* heap;
    } storage_{};
    std::uint32_t size_ = 0;
};

}  // namespace PAL
