#include "serve/owned_thread.h"

#include <pthread.h>

#include <system_error>
#include <utility>

namespace doccam::serve {

std::jthread ownedThread(std::function<void()> body) {
    pthread_attr_t attributes{};
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kStackBytes);
    pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
    try {
        return std::jthread(std::move(body));
    } catch (const std::system_error& error) {
        throw std::system_error(error.code(), "no thread can be started");
    }
}

} // namespace doccam::serve
