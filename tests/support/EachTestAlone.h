// EachTestAlone.h - a main() that runs each test in a process of its own.
//
// For tests of state that belongs to the whole process and has no way back, such as
// which pages the heap has opened. Include it in the one source file of the program.
#ifndef TV_TEST_EACH_TEST_ALONE_H
#define TV_TEST_EACH_TEST_ALONE_H

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

inline int runEachTestAlone()
{
    if (GTEST_FLAG_GET(filter) != "*" || GTEST_FLAG_GET(list_tests) ||
        !GTEST_FLAG_GET(internal_run_death_test).empty())
        return RUN_ALL_TESTS();

    std::vector<std::string> names;
    const auto& all = *::testing::UnitTest::GetInstance();
    for (int i = 0; i < all.total_test_suite_count(); ++i) {
        const auto& suite = *all.GetTestSuite(i);
        for (int k = 0; k < suite.total_test_count(); ++k)
            names.push_back(std::string(suite.name()) + "." + suite.GetTestInfo(k)->name());
    }
    int failures = 0;
    for (const std::string& name : names) {
        std::fflush(nullptr);
        const pid_t child = fork();
        if (child == 0) {
            GTEST_FLAG_SET(filter, name);
            std::exit(RUN_ALL_TESTS());
        }
        int status = 1;
        waitpid(child, &status, 0);
        if (status != 0) {
            std::printf("FAILED alone: %s\n", name.c_str());
            ++failures;
        }
    }
    std::printf("%zu tests, each in its own process, %d failed\n", names.size(), failures);
    return failures != 0;
}

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    return runEachTestAlone();
}

#endif
