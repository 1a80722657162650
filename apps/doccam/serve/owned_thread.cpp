#include "serve/owned_thread.h"

#include <system_error>
#include <utility>

namespace doccam::serve {
namespace {

void* runBody(void* argument) {
    const std::unique_ptr<std::function<void()>> body(
        static_cast<std::function<void()>*>(argument));
    (*body)();
    return nullptr;
}

} // namespace

OwnedThread::OwnedThread(std::function<void()> body) {
    auto owned = std::make_unique<std::function<void()>>(std::move(body));
    pthread_attr_t attributes{};
    pthread_attr_init(&attributes);
    int error = pthread_attr_setstacksize(&attributes, kStackBytes);
    if (error == 0) {
        error = pthread_create(&thread_, &attributes, runBody, owned.get());
    }
    pthread_attr_destroy(&attributes);
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), "no thread can be started");
    }
    [[maybe_unused]] const auto* const runs = owned.release(); // now owned by the thread
    joinable_ = true;
}

OwnedThread::~OwnedThread() {
    join();
}

OwnedThread::OwnedThread(OwnedThread&& other) noexcept
  : thread_(other.thread_)
  , joinable_(std::exchange(other.joinable_, false)) {}

OwnedThread& OwnedThread::operator=(OwnedThread&& other) noexcept {
    join();
    thread_ = other.thread_;
    joinable_ = std::exchange(other.joinable_, false);
    return *this;
}

void OwnedThread::join() {
    if (std::exchange(joinable_, false)) {
        pthread_join(thread_, nullptr);
    }
}

} // namespace doccam::serve
