#include "output/ProgressLine.h"

#include <gmock/gmock.h>

#include "base/DisplayText.h"

namespace jstore {

using namespace std::chrono_literals;

namespace {

ProgressView fileView() {
    ProgressView view;
    view.name = "video.mkv";
    view.bytes = 1'288'490'188;
    view.totalBytes = 3'221'225'472;
    view.rate = 36'805'017;
    view.left = 48s;
    return view;
}

ProgressView folderView() {
    ProgressView view;
    view.name = "video.mkv";
    view.unit = "files";
    view.items = 1204;
    view.bytes = 5'690'831'667;
    view.rate = 36'805'017;
    view.elapsed = 72s;
    view.namePercent = 40;
    return view;
}

TEST(ProgressLineTest, KnownTotalHasBarPercentRateAndTimeLeft) {
    EXPECT_EQ(progressLine(fileView(), 65), "video.mkv   39% [======>         ]  1.2G/3.0G  35.1M/s  0:48 left");
}

TEST(ProgressLineTest, UnknownTotalTellsWhatIsDone) {
    EXPECT_EQ(progressLine(folderView(), 80), "1204 files  5.3G  35.1M/s  1:12  video.mkv 40%");
}

TEST(ProgressLineTest, CountsAloneHaveNoBytes) {
    ProgressView view;
    view.unit = "removed";
    view.items = 7;
    view.elapsed = 3s;
    EXPECT_EQ(progressLine(view, 80), "7 removed  0:03");
}

TEST(ProgressLineTest, NeverWiderThanTheTerminal) {
    auto wide = folderView();
    wide.name = "\xE6\xBC\xA2\xE5\xAD\x97 \xF0\x9F\x9A\x80 a very long name that goes on and on and on and on.tar.gz";
    auto wideFile = fileView();
    wideFile.name = wide.name;
    for (std::size_t columns = 0; columns < 160; ++columns) {
        for (const auto& view : {fileView(), folderView(), wide, wideFile}) {
            EXPECT_LE(displayWidth(progressLine(view, columns)), columns) << progressLine(view, columns);
        }
    }
}

TEST(ProgressLineTest, LeastImportantGoesFirst) {
    EXPECT_EQ(progressLine(fileView(), 4), " 39%");
    EXPECT_EQ(progressLine(fileView(), 16), " 39%  0:48 left");
    EXPECT_EQ(progressLine(folderView(), 11), "1204 files");
    EXPECT_EQ(progressLine(fileView(), 3), "");
}

TEST(ProgressLineTest, HundredPercentIsTheLastByte) {
    auto view = fileView();
    view.bytes = *view.totalBytes - 1;
    EXPECT_EQ(progressLine(view, 4), " 99%");
    view.bytes = *view.totalBytes + 5;
    EXPECT_EQ(progressLine(view, 4), "100%");
}

TEST(ProgressLineTest, ControlCharactersOfANameDoNothing) {
    auto view = folderView();
    view.name = "a\x1B[2J\rb";
    EXPECT_EQ(progressLine(view, 80).find_first_of("\x1B\r"), std::string::npos);
}

TEST(ProgressLineTest, ClockHasHoursWhenNeeded) {
    EXPECT_EQ(clockText(0s), "0:00");
    EXPECT_EQ(clockText(725s), "12:05");
    EXPECT_EQ(clockText(3750s), "1:02:30");
}

}  // namespace

}  // namespace jstore
