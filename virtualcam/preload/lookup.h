// Which descriptors and addresses are virtual. Lock-free and without allocation, since every call
// of the program checks.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>

namespace doccam::virtualcam {

class DescriptorSet {
  public:
    static constexpr int kLimit = 8192;

    bool contains(int descriptor) const {
        return descriptor >= 0 && descriptor < kLimit && bits_[slot(descriptor)].load();
    }

    void insert(int descriptor) { bits_[slot(descriptor)] = true; }

    void erase(int descriptor) { bits_[slot(descriptor)] = false; }

  private:
    static std::size_t slot(int descriptor) { return static_cast<std::size_t>(descriptor); }

    std::array<std::atomic<bool>, kLimit> bits_{};
};

class AddressSet {
  public:
    static constexpr std::size_t kLimit = 1024;

    bool contains(const void* address) const { return find(address) != nullptr; }

    int size() const { return size_.load(); }

    // False when the set is full.
    bool insert(void* address) {
        for (auto& slot : slots_) {
            void* free = nullptr;
            if (slot.compare_exchange_strong(free, address)) {
                ++size_;
                return true;
            }
        }
        return false;
    }

    // False when the address was not in the set.
    bool erase(void* address) {
        for (auto& slot : slots_) {
            void* expected = address;
            if (slot.compare_exchange_strong(expected, nullptr)) {
                --size_;
                return true;
            }
        }
        return false;
    }

  private:
    const std::atomic<void*>* find(const void* address) const {
        if (address == nullptr || size_.load() == 0) {
            return nullptr;
        }
        for (const auto& slot : slots_) {
            if (slot.load() == address) {
                return &slot;
            }
        }
        return nullptr;
    }

    std::array<std::atomic<void*>, kLimit> slots_{};
    std::atomic<int> size_{0};
};

extern DescriptorSet virtualDescriptors;
extern AddressSet virtualMappings;

} // namespace doccam::virtualcam
