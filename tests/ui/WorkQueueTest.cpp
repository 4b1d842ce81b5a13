#include <ui/WorkQueue.h>

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace {

TEST(WorkQueueTest, KeepsTheOrderOfHandlersAndInput) {
    WorkQueue queue;
    std::string done;
    queue.run([&] {
        queue.input([&] {
            done += "key ";
            queue.run([&] { done += "handler-of-key "; });
        });
        queue.run([&] {
            done += "click ";
            queue.input([&] { done += "late "; });
        });
        done += "first ";
    });
    EXPECT_EQ("first key handler-of-key click late ", done);
    EXPECT_FALSE(queue.busy());
}

TEST(WorkQueueTest, GoesOnAfterAnErrorAndStopsWhenClosed) {
    WorkQueue queue;
    int ran = 0;
    EXPECT_THROW(queue.run([] { throw std::runtime_error("x"); }), std::runtime_error);
    EXPECT_FALSE(queue.busy());
    queue.run([&] { ++ran; });
    queue.run([&] {
        queue.input([&] { ++ran; });
        queue.close();
    });
    queue.run([&] { ++ran; });
    queue.input([&] { ++ran; });
    EXPECT_EQ(1, ran);
}

} // namespace
