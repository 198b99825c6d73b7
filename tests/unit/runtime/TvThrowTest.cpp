#include "runtime/TvThrow.h"

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

namespace {

TEST(TvThrow, MessageIsThePointerItself)
{
    static const wchar_t message[] = L"End of file!";
    try {
        tvThrowMessage(message);
    } catch (const wchar_t* thrown) {
        EXPECT_EQ(thrown, message);
    }
}

TEST(TvThrow, StatusIsAValue)
{
    try {
        tvThrowStatus(Orna::eFileAccessErr);
    } catch (Orna::ErrorStatus thrown) {
        EXPECT_EQ(thrown, Orna::eFileAccessErr);
    }
}

TEST(TvThrow, StatusIsNoInteger) { EXPECT_THROW(tvThrowStatus(Orna::eNoFileName), Orna::ErrorStatus); }

TEST(TvThrow, TypeNameOfAStatus)
{
    EXPECT_EQ(typeid(Orna::ErrorStatus).name(), std::string("N4Orna11ErrorStatusE"));
}

} // namespace
