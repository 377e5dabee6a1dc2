#include "plugin/log/log_format.h"

#include <gtest/gtest.h>

namespace {

std::tm At(int year, int month, int day, int hour, int minute, int second, int weekday) {
  std::tm t{};
  t.tm_year = year - 1900;
  t.tm_mon = month - 1;
  t.tm_mday = day;
  t.tm_hour = hour;
  t.tm_min = minute;
  t.tm_sec = second;
  t.tm_wday = weekday;
  return t;
}

TEST(LogFormat, LinesUseATwelveHourClockWithoutMark) {
  EXPECT_EQ(FormatLogLine(At(2024, 3, 9, 14, 5, 7, 6), "hello"), "2024-03-09 02:05:07 : hello\n");
  EXPECT_EQ(FormatLogLine(At(2024, 3, 9, 0, 0, 0, 6), "midnight"), "2024-03-09 12:00:00 : midnight\n");
}

TEST(LogFormat, HeaderWithoutAFrameEndsWithTheApplication) {
  EXPECT_EQ(FormatLogHeader(At(2024, 3, 9, 14, 5, 7, 6), "Linux", nullptr),
            "\nQUILLON_FOR_AE_DEBUG_LOG\n=========================\n"
            "Start log : Sat Mar  9 14:05:07 2024\n\n"
            "Quillon Version : 5.1.2x1918709714\n"
            "Operating System : Linux \n"
            "Application : After Effects\n");
}

TEST(LogFormat, HeaderWithAFrameAddsTheHostsBlocks) {
  HostLogInfo host;
  host.renderOnly = false;
  host.user = "Ada";
  host.company = "Studio";
  host.language = "en_US";
  const std::string header = FormatLogHeader(At(2024, 12, 25, 9, 0, 0, 3), "Linux", &host);
  EXPECT_NE(header.find("Start log : Wed Dec 25 09:00:00 2024\n\n"), std::string::npos);
  const std::string tail = "Application : After Effects\n"
                           "Render Only    : NO\n"
                           "Current User    : Ada\n"
                           "Current Company : Studio\n"
                           "Current Language    : en_US\n";
  EXPECT_EQ(header.substr(header.size() - tail.size()), tail);
  HostLogInfo partial;
  partial.renderOnly = true;
  const std::string short_header = FormatLogHeader(At(2024, 12, 25, 9, 0, 0, 3), "Linux", &partial);
  const std::string short_tail = "Application : After Effects\nRender Only    : YES\n";
  EXPECT_EQ(short_header.substr(short_header.size() - short_tail.size()), short_tail);
}

TEST(LogFormat, ScopeEndCarriesTheSecondsWhenTimed) {
  EXPECT_EQ(FormatScopeEnd(1.5), "End [1.5 sec]");
  EXPECT_EQ(FormatScopeEnd(std::nullopt), "End");
}

}  // namespace
