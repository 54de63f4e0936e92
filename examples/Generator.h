#pragma once

#include <coroutine>
#include <exception>
#include <iterator>
#include <memory>
#include <utility>

/// What a coroutine yields, one value at a time: as much of the `std::generator` of C++23 as a
/// `for` loop needs. The values stay in the coroutine; a reference to one lasts until the next is
/// asked for. What the coroutine throws comes out of the loop.
template <class Value>
class Generator {
  public:
    struct promise_type {
        Generator get_return_object() { return Generator(Handle::from_promise(*this)); }
        std::suspend_always initial_suspend() noexcept { return {}; }
        std::suspend_always final_suspend() noexcept { return {}; }
        std::suspend_always yield_value(const Value& value) noexcept {
            yielded = std::addressof(value);
            return {};
        }
        void return_void() noexcept {}
        void unhandled_exception() { throw; }

        const Value* yielded = nullptr;
    };

    class iterator {
      public:
        using difference_type = std::ptrdiff_t;
        using value_type = Value;

        explicit iterator(std::coroutine_handle<promise_type> at) : at_(at) {}
        const Value& operator*() const { return *at_.promise().yielded; }
        iterator& operator++() {
            at_.resume();
            return *this;
        }
        void operator++(int) { ++*this; }
        bool operator==(std::default_sentinel_t /*end*/) const { return at_.done(); }

      private:
        std::coroutine_handle<promise_type> at_;
    };

    Generator(Generator&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    Generator& operator=(Generator&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Generator() {
        if (handle_) handle_.destroy();
    }

    iterator begin() {
        handle_.resume();
        return iterator(handle_);
    }
    std::default_sentinel_t end() const { return {}; }

  private:
    using Handle = std::coroutine_handle<promise_type>;
    explicit Generator(Handle handle) : handle_(handle) {}

    Handle handle_;
};
