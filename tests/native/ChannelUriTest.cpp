#include "doctor/log/ChannelUri.h"

#include <gtest/gtest.h>

using doctor::WithShortUris;

TEST(ChannelUri, IsCutAfterItsFirstCharacters)
{
    EXPECT_EQ(WithShortUris("is https://db3.notify.windows.com/?token=AwYAAABcdefgh%2b1 ."),
              "is https://db3.notify.windows.com/?token=AwYAAA\u2026 .");
}

TEST(ChannelUri, IsCutInEachPlace)
{
    EXPECT_EQ(WithShortUris("<a>https://h/?token=123456789</a> https://h/?token=123456789"),
              "<a>https://h/?token=123456\u2026</a> https://h/?token=123456\u2026");
}

TEST(ChannelUri, StaysWithoutAQueryOrWithAShortOne)
{
    for (auto const* const text : {"", "no address", "https://", "https://host/a/long/path/without/a/query",
                                   "https://h/?token=123456", "https://h/?", "http://h/?token=1234567890"})
    {
        EXPECT_EQ(WithShortUris(text), text);
    }
}

TEST(ChannelUri, IsCutBetweenCharacters)
{
    EXPECT_EQ(WithShortUris("https://h/?token=12345\u00E9678"), "https://h/?token=12345\u2026");
}
