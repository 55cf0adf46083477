#include "Error.h"

#include <gtest/gtest.h>

TEST(Error, keepsTextAndCode) {
    const Error unknown;
    EXPECT_EQ(unknown.code(), 52);
    EXPECT_EQ(unknown.message(), QStringLiteral("Unknown"));
    const Error error(Error::Parse, QStringLiteral("schräg"));
    EXPECT_EQ(error.code(), 39);
    EXPECT_STREQ(error.what(), "schr\xc3\xa4g");
}
