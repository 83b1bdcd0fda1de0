#include "doctor/verdict/FindingText.h"

#include "doctor/live/MakeFinding.h"

#include <gtest/gtest.h>

using doctor::Stage;

TEST(FindingText, IsALineWithResultStageAndSentence)
{
    EXPECT_EQ(doctor::FindingText(doctor::Worked(Stage::StartUp, "It runs.")),
              "worked          start-up           It runs.");
    EXPECT_EQ(doctor::FindingText(doctor::CannotBeTold(Stage::ComponentLaunched, "Unknown.", "Look.")),
              "cannot be told  desktop component  Unknown.\n"
              "                What to do: Look.");
}

TEST(FindingText, HasCauseAndAdvice)
{
    EXPECT_EQ(doctor::FindingText(doctor::Failed(Stage::Channel, "None.", "No network.", "Connect.")),
              "failed          channel            None.\n"
              "                Usual cause: No network.\n"
              "                What to do: Connect.");
}

TEST(FindingText, HasNoControlCharacters)
{
    EXPECT_EQ(doctor::FindingText(doctor::Failed(Stage::Channel, "a\x1b[2J", "b\x07", "c\r")),
              "failed          channel            a\uFFFD[2J\n"
              "                Usual cause: b\uFFFD\n"
              "                What to do: c\uFFFD");
}

TEST(FindingText, IsAnObjectForMachines)
{
    EXPECT_EQ(doctor::FindingJson(doctor::Failed(Stage::UriStored, "\"None\".", "", "Ask.")),
              R"({"stage":"URI stored","result":"failed","what":"\"None\".","cause":"","advice":"Ask."})");
}
