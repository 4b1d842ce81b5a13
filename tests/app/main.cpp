#include <app/ui/Program.h>

#include <gtest/gtest.h>

// The tests run inside the till's own application, whose last guard is one of the things to test.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    Application app(argc, argv);
    return RUN_ALL_TESTS();
}
