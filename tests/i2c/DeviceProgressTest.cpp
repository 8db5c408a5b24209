// The percentage and the time left of an operation on a whole device.
#include "support/TestProgram.h"

namespace tarnwell {
namespace {

using namespace std::chrono_literals;

TEST(DeviceProgress, TellsPartDoneAndSecondsLeftAndGoesAway) {
    TestProgram test;
    const StatusBar& bar = test.program.statusBar;
    {
        DeviceProgress progress = test.program.i2c.TrackProgress();
        for (const int unnoticed : {0, 1, 63, 65})
            progress.Show(unnoticed);
        EXPECT_FALSE(bar.RunningProgress());
        struct Row {
            int bytes;
            BusTime elapsed;
            std::string panel;
            int secondsLeft;
        };
        const BusTime begin = test.television.Now();
        for (const Row& row : {Row{64, 260ms, "1%", 34}, Row{1024, 4s, "13%", 28},
                               Row{4096, 10s, "50%", 10}, Row{8128, 32s, "99%", 1}}) {
            test.television.WaitUntil(begin + row.elapsed);
            progress.Show(row.bytes);
            EXPECT_EQ(test.Eep(), row.panel);
            EXPECT_EQ(bar.RunningProgress()->secondsLeft, row.secondsLeft) << row.panel;
        }
        EXPECT_EQ(test.user.paintings, 4);
    }
    EXPECT_FALSE(bar.RunningProgress());
    EXPECT_EQ(test.Eep(), "Pri");
}

}  // namespace
}  // namespace tarnwell
