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
    EXPECT_EQ("video.mkv   39% [======>         ]  1.2G/3.0G  35.1M/s  0:48 left", progressLine(fileView(), 65));
}

TEST(ProgressLineTest, UnknownTotalTellsWhatIsDone) {
    EXPECT_EQ("1204 files  5.3G  35.1M/s  1:12  video.mkv 40%", progressLine(folderView(), 80));
}

TEST(ProgressLineTest, CountsAloneHaveNoBytes) {
    ProgressView view;
    view.unit = "removed";
    view.items = 7;
    view.elapsed = 3s;
    EXPECT_EQ("7 removed  0:03", progressLine(view, 80));
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
    EXPECT_EQ(" 39%", progressLine(fileView(), 4));
    EXPECT_EQ(" 39%  0:48 left", progressLine(fileView(), 16));
    EXPECT_EQ("1204 files", progressLine(folderView(), 11));
    EXPECT_EQ("", progressLine(fileView(), 3));
}

TEST(ProgressLineTest, HundredPercentIsTheLastByte) {
    auto view = fileView();
    view.bytes = *view.totalBytes - 1;
    EXPECT_EQ(" 99%", progressLine(view, 4));
    view.bytes = *view.totalBytes + 5;
    EXPECT_EQ("100%", progressLine(view, 4));
}

TEST(ProgressLineTest, ControlCharactersOfANameDoNothing) {
    auto view = folderView();
    view.name = "a\x1B[2J\rb";
    EXPECT_EQ(std::string::npos, progressLine(view, 80).find_first_of("\x1B\r"));
}

TEST(ProgressLineTest, ClockHasHoursWhenNeeded) {
    EXPECT_EQ("0:00", clockText(0s));
    EXPECT_EQ("12:05", clockText(725s));
    EXPECT_EQ("1:02:30", clockText(3750s));
}

}  // namespace

}  // namespace jstore
