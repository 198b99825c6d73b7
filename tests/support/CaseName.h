// CaseName.h - names the tests of a table by the `name` of each row.
#ifndef TV_TEST_CASE_NAME_H
#define TV_TEST_CASE_NAME_H

#include <gtest/gtest.h>

#include <string>

template<class Case>
std::string nameOfCase(const testing::TestParamInfo<Case>& info)
{
    return info.param.name;
}

#endif
