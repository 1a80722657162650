// The queue of work for the thread that calls the library, and for those that serve requests.
#include "serve/commands/command_queue.h"
#include "waiting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace doccam::serve {
namespace {

// Serves until the queue closes.
class Server {
  public:
    explicit Server(CommandQueue& queue)
      : queue_(queue)
      , thread_([&queue] { queue.serve(); }) {}

    ~Server() {
        queue_.close();
        thread_.join();
    }

    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    std::thread::id id() const { return thread_.get_id(); }

  private:
    CommandQueue& queue_;
    std::thread thread_;
};

bool offer(CommandQueue& queue, std::function<void()> command) {
    return queue.offer(command);
}

} // namespace

TEST(CommandQueue, RunsEveryCommandOnTheServingThread) {
    CommandQueue queue;
    const Server server(queue);
    std::vector<std::thread> clients;
    for (int i = 0; i < 8; ++i) {
        clients.emplace_back([&] {
            EXPECT_EQ(queue.order([] { return std::this_thread::get_id(); }), server.id());
        });
    }
    for (std::thread& client : clients) {
        client.join();
    }
}

TEST(CommandQueue, RethrowsACommandsException) {
    CommandQueue queue;
    const Server server(queue);
    EXPECT_THROW(queue.order([]() -> int { throw std::out_of_range("no"); }), std::out_of_range);
    EXPECT_EQ(queue.order([] { return 1; }), 1);
}

TEST(CommandQueue, RefusesACommandOnceItIsClosed) {
    CommandQueue queue;
    queue.close();
    EXPECT_THROW(queue.order([] { return 1; }), Busy);
    EXPECT_FALSE(queue.serve(kLong));
}

TEST(CommandQueue, RefusesAWaitingCommandWhenItCloses) {
    CommandQueue queue;
    std::atomic<int> run{0};
    std::thread client([&] { EXPECT_THROW(queue.order([&] { ++run; }), Busy); });
    // The command is refused whether it already waits or comes later.
    queue.close();
    client.join();
    EXPECT_EQ(run, 0);
}

TEST(CommandQueue, RefusesWhatWouldWaitTooLong) {
    CommandQueue queue;
    std::atomic<int> refused{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < 40; ++i) {
        clients.emplace_back([&] {
            try {
                queue.order([] {});
            } catch (const Busy&) {
                ++refused;
            }
        });
    }
    while (refused < 8) {
        std::this_thread::yield();
    }
    EXPECT_EQ(refused, 8);
    queue.close();
    for (std::thread& client : clients) {
        client.join();
    }
    EXPECT_EQ(refused, 40);
}

TEST(CommandQueue, HasItsGivenLengthAndRefusal) {
    CommandQueue queue(0, "come back later");
    try {
        queue.order([] {});
        ADD_FAILURE() << "there is no room for it";
    } catch (const Busy& refusal) {
        EXPECT_STREQ(refusal.what(), "come back later");
    }
}

TEST(CommandQueue, RefusesAnOfferBeyondItsLengthWhileItsThreadIsBusy) {
    std::promise<void> begun;
    std::promise<void> released;
    CommandQueue queue(1);
    const Server server(queue);
    EXPECT_TRUE(offer(queue, [&] {
        begun.set_value();
        released.get_future().wait();
    }));
    begun.get_future().wait();
    EXPECT_TRUE(offer(queue, [] {}));
    std::function<void()> refused = [] {};
    EXPECT_FALSE(queue.offer(refused));
    EXPECT_TRUE(refused);
    released.set_value();
}

TEST(CommandQueue, AcceptsAnOfferForEachIdleThread) {
    // They outlive the threads.
    std::promise<void> begun[2];
    std::promise<void> released;
    const std::shared_future<void> mayEnd = released.get_future().share();
    CommandQueue queue(0);
    EXPECT_FALSE(offer(queue, [] {}));
    const Server first(queue);
    const Server second(queue);
    for (std::promise<void>& one : begun) {
        while (!offer(queue, [&] {
            one.set_value();
            mayEnd.wait();
        })) {
            std::this_thread::yield(); // until the thread is idle
        }
        one.get_future().wait();
    }
    EXPECT_FALSE(offer(queue, [] {}));
    released.set_value();
}

TEST(CommandQueue, DropsWaitingOffersWhenItCloses) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> kept = held;
    CommandQueue queue;
    EXPECT_TRUE(offer(queue, [held] {}));
    held.reset();
    queue.close();
    EXPECT_TRUE(kept.expired());
}

TEST(CommandQueue, KeepsServingWithoutCommands) {
    CommandQueue queue;
    EXPECT_TRUE(queue.serve(std::chrono::milliseconds(0)));
}

} // namespace doccam::serve
